#include "widgets/Theme.h"

#include "widgets/Accessibility.h"
#include "widgets/FingerScroll.h"
#include "widgets/FittedText.h"
#include "widgets/KeyboardFocus.h"
#include "widgets/ThemeStyle.h"
#include "widgets/WindowPlaces.h"

#include <QApplication>
#include <QFileInfo>
#include <QImage>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <QWidget>

namespace lumora {

namespace {

constexpr double usualLetters = 11, easyLetters = 12; // points
constexpr double easySpacing = 108;                   // per cent between letters
constexpr double easyWordSpacing = 3;                 // pixels, beside a blank's own width

ThemeLook lookNow;

constexpr char sheetProperty[] = "themedSheet"; // of widgets that change with the theme
constexpr char faintProperty[] = "faint";

QPalette themePalette() {
    QPalette palette(colours::paper);
    palette.setColor(QPalette::Window, colours::paper);
    palette.setColor(QPalette::Base, colours::paper);
    palette.setColor(QPalette::AlternateBase, colours::parchment);
    palette.setColor(QPalette::Button, colours::paper);
    palette.setColor(QPalette::Highlight, colours::checked);
    palette.setColor(QPalette::HighlightedText, colours::ink);
    palette.setColor(QPalette::ToolTipBase, colours::paper);
    palette.setColor(QPalette::ToolTipText, colours::ink);
    palette.setColor(QPalette::Link, colours::link);
    palette.setColor(QPalette::PlaceholderText, colours::faintInk);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, colours::ink);
        palette.setColor(QPalette::Disabled, role, colours::disabledInk);
    }
    palette.setColor(QPalette::Disabled, QPalette::Base, colours::parchment);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colours::line);
    return palette;
}

QString styleSheet() {
    return withColours(QStringLiteral(R"(
QToolTip { background: @paper; color: @ink; border: 1px solid @line; padding: 6px 10px; }

QPushButton { background: @paper; color: @ink; border: 2px solid @line; border-radius: 12px;
    padding: 8px 20px; min-height: 28px; min-width: 72px; }
QPushButton:default { border-color: @sky; }
QPushButton:hover { background: @hover; border-color: @litEdge; }
QPushButton:pressed { background: @pressed; }
QPushButton:disabled { background: @parchment; color: @disabled; border-color: @line; }
QToolButton { background: transparent; border: 2px solid transparent; border-radius: 10px; padding: 6px; }
QToolButton:hover { background: @hover; border-color: @litEdge; }
QToolButton:pressed { background: @pressed; }
QToolButton:checked { background: @checked; }

QLineEdit, QSpinBox, QDoubleSpinBox, QPlainTextEdit, QTextEdit, QComboBox {
    background: @paper; color: @ink; border: 2px solid @line; border-radius: 10px;
    padding: 6px 10px; min-height: 28px; selection-background-color: @chosen; selection-color: @ink; }
QComboBox { combobox-popup: 0; }
QSpinBox, QDoubleSpinBox { padding-right: 34px; }
QLineEdit:hover, QSpinBox:hover, QDoubleSpinBox:hover, QComboBox:hover { border-color: @litEdge; }
QLineEdit:focus, QSpinBox:focus, QDoubleSpinBox:focus, QPlainTextEdit:focus, QTextEdit:focus, QComboBox:focus {
    border-color: @sky; }
QLineEdit:disabled, QSpinBox:disabled, QDoubleSpinBox:disabled, QComboBox:disabled {
    background: @parchment; color: @disabled; border-color: @line; }
QLineEdit:read-only { background: @parchment; }
QComboBox::drop-down { border: none; width: 36px; }
QComboBox::down-arrow, QAbstractSpinBox::down-arrow { image: url(:/icons/down.svg); width: 18px; height: 18px; }
QAbstractSpinBox::up-arrow { image: url(:/icons/up.svg); width: 18px; height: 18px; }
QAbstractSpinBox::up-button, QAbstractSpinBox::down-button { subcontrol-origin: border; border: none; width: 34px; }
QAbstractSpinBox::up-button { subcontrol-position: top right; margin-top: 3px; }
QAbstractSpinBox::down-button { subcontrol-position: bottom right; margin-bottom: 3px; }
QComboBox QAbstractItemView { background: @paper; border: 2px solid @line; border-radius: 0px; outline: none;
    padding: 4px; }
QComboBox QLineEdit, QSpinBox QLineEdit, QDoubleSpinBox QLineEdit, QAbstractItemView QLineEdit {
    border: none; padding: 0px; min-height: 0px; background: transparent; }

QCheckBox, QRadioButton { color: @ink; spacing: 10px; min-height: 44px; }
QCheckBox:disabled, QRadioButton:disabled { color: @disabled; }

QListView, QTreeView, QTableView { background: @paper; border: 2px solid @line; border-radius: 12px; outline: none;
    padding: 4px; }
QListView:focus, QTreeView:focus, QTableView:focus { border-color: @sky; }
QAbstractItemView::item { padding: 5px 6px; border-radius: 8px; color: @ink; }
QAbstractItemView::item:hover { background: @hover; }
QAbstractItemView::item:selected { background: @checked; color: @ink; }
QHeaderView::section { background: @parchment; border: none; border-bottom: 2px solid @line; padding: 8px; }

QScrollBar:vertical { background: transparent; width: 18px; margin: 2px; }
QScrollBar:horizontal { background: transparent; height: 18px; margin: 2px; }
QScrollBar::handle { background: @grip; border-radius: 7px; }
QScrollBar::handle:vertical { min-height: 40px; }
QScrollBar::handle:horizontal { min-width: 40px; }
QScrollBar::handle:hover { background: @sky; }
QScrollBar::handle:pressed { background: @link; }
QScrollBar::handle:disabled { background: @line; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0px; height: 0px; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
QAbstractScrollArea::corner { background: transparent; }

QSlider { min-height: 44px; }

QMenu { background: @paper; border: 2px solid @line; padding: 6px; }
QMenu::item { padding: 10px 28px; border-radius: 8px; color: @ink; }
QMenu::item:selected { background: @hover; }
QMenu::item:disabled { color: @disabled; }
QMenu::separator { height: 2px; background: @line; margin: 6px 10px; }

QGroupBox { border: 2px solid @line; border-radius: 12px; margin-top: 14px; padding: 12px 10px 8px 10px; }
QGroupBox::title { subcontrol-origin: margin; left: 16px; padding: 0px 6px; }
QTabWidget::pane { border: 2px solid @line; border-radius: 12px; background: @paper; top: -2px; }
QTabBar::tab { background: @parchment; color: @ink; border: 2px solid @line; border-top-left-radius: 12px;
    border-top-right-radius: 12px; padding: 10px 20px; margin-right: 4px; }
QTabBar::tab:selected { background: @paper; border-bottom-color: @paper; }
QTabBar::tab:hover:!selected { background: @hover; }
QProgressBar { background: @paper; border: 2px solid @line; border-radius: 10px; min-height: 20px;
    text-align: center; color: @ink; }
QProgressBar::chunk { background: @sun; border-radius: 8px; }
)"));
}

/// Arrows back, forward and out go with the reading direction; Arabic has a question mark of its own.
bool isMirrored(const QString &icon) {
    static const QStringList withTheText{"undo", "redo", "exit"};
    const QString drawing = QFileInfo(icon).completeBaseName();
    return (QGuiApplication::isRightToLeft() && withTheText.contains(drawing)) ||
           (drawing == "help" && QLocale().script() == QLocale::ArabicScript);
}

} // namespace

QString withColours(QString sheet) {
    const std::pair<const char *, QColor> names[] = {
        {"@parchment", colours::parchment}, {"@paper", colours::paper},
        {"@line", colours::line},           {"@ink", colours::ink},
        {"@faintInk", colours::faintInk},   {"@sky", colours::sky},
        {"@link", colours::link},           {"@sun", colours::sun},
        {"@hover", colours::hover},         {"@litEdge", colours::litEdge},
        {"@pressed", colours::pressed},     {"@checked", colours::checked},
        {"@chosen", colours::checked},      {"@disabled", colours::disabledInk},
        {"@grip", colours::grip},
    };
    for (const auto &[name, colour] : names) {
        sheet.replace(QLatin1String(name), colour.name());
    }
    return sheet;
}

const ThemeLook &shownLook() {
    return lookNow;
}

void setThemedSheet(QWidget &widget, const QString &sheet) {
    widget.setProperty(sheetProperty, sheet);
    widget.setStyleSheet(withColours(sheet));
}

void setFaint(QWidget &widget) {
    widget.setProperty(faintProperty, true);
    QPalette palette = widget.palette();
    palette.setColor(QPalette::WindowText, colours::faintInk);
    widget.setPalette(palette);
}

namespace {

QFont themeFont(bool easy) {
    // The others have the letters that Andika has not; Japanese names their shapes of the characters of all East Asia.
    QFont font(QStringList{"Andika", "Noto Sans Arabic UI", "Noto Sans CJK JP"});
    font.setPointSizeF(easy ? easyLetters : usualLetters);
    if (easy) {
        font.setLetterSpacing(QFont::PercentageSpacing, easySpacing);
        font.setWordSpacing(easyWordSpacing);
    }
    return font;
}

} // namespace

void applyTheme(QApplication &application, const ThemeLook &look) {
    lookNow = look;
    colours::shown = look.highContrast ? colours::highContrast : colours::usual;
    const bool isFirst = application.findChild<KeyboardFocus *>() == nullptr;
    if (isFirst) {
        auto *style = new ThemeStyle;
        style->setParent(&application);
        QApplication::setStyle(style);
    }
    application.setPalette(themePalette());
    application.setFont(themeFont(look.easyLetters));
    application.setStyleSheet(styleSheet());
    if (isFirst) {
        application.installEventFilter(new ShortenedTips(&application));
        new KeyboardFocus(&application);
        new FingerScroll(&application);
        new WindowPlaces(&application);
        installAccessibility();
        return;
    }
    for (QWidget *widget : QApplication::allWidgets()) {
        if (const QString sheet = widget->property(sheetProperty).toString(); !sheet.isEmpty()) {
            setThemedSheet(*widget, sheet);
        }
        if (widget->property(faintProperty).toBool()) {
            setFaint(*widget);
        }
        widget->update();
    }
}

QPixmap iconPixmap(const QString &name, int size, qreal devicePixelRatio) {
    const int pixels = qRound(size * devicePixelRatio);
    if (name.isEmpty() || pixels <= 0) {
        return {};
    }
    const bool mirrored = isMirrored(name);
    // The drawings are made for a light surface, which yellow is not enough.
    const bool onWhite = colours::isHighContrast() && !name.startsWith(":/");
    const QString key = QString("lumora-icon %1 %2 %3 %4")
                            .arg(name)
                            .arg(pixels)
                            .arg(devicePixelRatio)
                            .arg((mirrored ? 1 : 0) + (onWhite ? 2 : 0));
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) {
        return pixmap;
    }
    QSvgRenderer drawing(name.startsWith(":/") ? name : ":/icons/" + name + ".svg");
    if (!drawing.isValid()) {
        return {};
    }
    drawing.setAspectRatioMode(Qt::KeepAspectRatio);
    pixmap = QPixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    if (onWhite) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::white);
        painter.drawRoundedRect(QRectF(pixmap.rect()), pixels / 5.0, pixels / 5.0);
    }
    if (mirrored) {
        painter.setTransform(QTransform(-1, 0, 0, 1, pixels, 0));
    }
    drawing.render(&painter, QRectF(0, 0, pixels, pixels));
    painter.end();
    pixmap.setDevicePixelRatio(devicePixelRatio);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

QPixmap disabledPixmap(const QPixmap &pixmap) {
    const QString key = QString("lumora-disabled %1").arg(pixmap.cacheKey());
    QPixmap faint;
    if (pixmap.isNull() || QPixmapCache::find(key, &faint)) {
        return faint;
    }
    QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int grey = 70 + qGray(row[x]) * 5 / 8; // lines and surfaces stay apart
            row[x] = qRgba(grey, grey, grey, qAlpha(row[x]) / 2);
        }
    }
    faint = QPixmap::fromImage(image);
    faint.setDevicePixelRatio(pixmap.devicePixelRatio());
    QPixmapCache::insert(key, faint);
    return faint;
}

QString plainCaption(const QString &text) {
    QString plain;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == '&' && ++i == text.size()) {
            break;
        }
        plain += text[i];
    }
    return plain;
}

void paintSoftShadow(QPainter &painter, const QRectF &panel, qreal corner) {
    // Rounded rectangles of growing size and the same faint ink add up to a slope without a blur filter.
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRectF shade = panel.translated(0, 3);
    QColor ink = colours::ink;
    for (int grow = shadowMargin - 4; grow > 0; grow -= 2) {
        ink.setAlphaF(0.022F);
        painter.setBrush(ink);
        painter.drawRoundedRect(shade.adjusted(-grow, -grow, grow, grow), corner + grow, corner + grow);
    }
    painter.restore();
}

void paintPanel(QPainter &painter, const QRectF &panel, qreal corner, const QColor &surface) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colours::line, 2));
    painter.setBrush(surface);
    painter.drawRoundedRect(panel.adjusted(1, 1, -1, -1), corner, corner);
    painter.restore();
}

} // namespace lumora
