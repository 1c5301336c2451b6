#include "widgets/Theme.h"

#include "widgets/ThemeStyle.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace lumora {

namespace {

QPalette warmPalette() {
    QPalette palette(colours::parchment);
    palette.setColor(QPalette::Window, colours::parchment);
    palette.setColor(QPalette::Base, colours::paper);
    palette.setColor(QPalette::AlternateBase, colours::parchment);
    palette.setColor(QPalette::Button, colours::paper);
    palette.setColor(QPalette::Highlight, colours::chosen);
    palette.setColor(QPalette::HighlightedText, colours::ink);
    palette.setColor(QPalette::ToolTipBase, colours::paper);
    palette.setColor(QPalette::ToolTipText, colours::ink);
    palette.setColor(QPalette::Link, colours::sky.darker(140));
    palette.setColor(QPalette::PlaceholderText, colours::faintInk);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, colours::ink);
        palette.setColor(QPalette::Disabled, role, QColor(150, 146, 138));
    }
    palette.setColor(QPalette::Disabled, QPalette::Base, colours::parchment);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colours::line);
    return palette;
}

/// Names in the style sheet are replaced by the colours, so that there is one place to change them.
QString styleSheet() {
    QString sheet = QStringLiteral(R"(
QToolTip { background: @paper; color: @ink; border: 1px solid @line; padding: 6px 10px; }

QPushButton { background: @paper; color: @ink; border: 2px solid @line; border-radius: 12px;
    padding: 8px 20px; min-height: 28px; min-width: 72px; }
QPushButton:default { border-color: @sky; }
QPushButton:hover { background: @hover; border-color: @sun; }
QPushButton:focus { border-color: @sky; }
QPushButton:pressed { background: @pressed; }
QPushButton:disabled { background: @parchment; color: #96928a; border-color: @line; }
QToolButton { background: transparent; border: 2px solid transparent; border-radius: 10px; padding: 6px; }
QToolButton:hover { background: @hover; border-color: @sun; }
QToolButton:focus { border-color: @sky; }
QToolButton:pressed, QToolButton:checked { background: @pressed; }

QLineEdit, QSpinBox, QDoubleSpinBox, QPlainTextEdit, QTextEdit, QComboBox {
    background: white; color: @ink; border: 2px solid @line; border-radius: 10px;
    padding: 6px 10px; min-height: 28px; selection-background-color: @chosen; selection-color: @ink; }
QComboBox { combobox-popup: 0; }
QSpinBox, QDoubleSpinBox { padding-right: 34px; }
QLineEdit:hover, QSpinBox:hover, QDoubleSpinBox:hover, QComboBox:hover { border-color: @sun; }
QLineEdit:focus, QSpinBox:focus, QDoubleSpinBox:focus, QPlainTextEdit:focus, QTextEdit:focus, QComboBox:focus {
    border-color: @sky; }
QLineEdit:disabled, QSpinBox:disabled, QDoubleSpinBox:disabled, QComboBox:disabled {
    background: @parchment; color: #96928a; border-color: @line; }
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

QCheckBox, QRadioButton { color: @ink; spacing: 10px; min-height: 32px; }
QCheckBox:disabled, QRadioButton:disabled { color: #96928a; }

QListView, QTreeView, QTableView { background: @paper; border: 2px solid @line; border-radius: 12px; outline: none;
    padding: 4px; }
QListView:focus, QTreeView:focus, QTableView:focus { border-color: @sky; }
QAbstractItemView::item { padding: 5px 6px; border-radius: 8px; color: @ink; }
QAbstractItemView::item:hover { background: @hover; }
QAbstractItemView::item:selected { background: @checked; color: @ink; }
QHeaderView::section { background: @parchment; border: none; border-bottom: 2px solid @line; padding: 8px; }

QScrollBar:vertical { background: transparent; width: 18px; margin: 2px; }
QScrollBar:horizontal { background: transparent; height: 18px; margin: 2px; }
QScrollBar::handle { background: #b9b18f; border-radius: 7px; }
QScrollBar::handle:vertical { min-height: 40px; }
QScrollBar::handle:horizontal { min-width: 40px; }
QScrollBar::handle:hover { background: @sky; }
QScrollBar::handle:pressed { background: #1f6fd8; }
QScrollBar::handle:disabled { background: @line; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0px; height: 0px; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
QAbstractScrollArea::corner { background: transparent; }

QSlider { min-height: 34px; }
QSlider::groove:horizontal { background: @line; height: 8px; border-radius: 4px; }
QSlider::sub-page:horizontal { background: @sky; height: 8px; border-radius: 4px; }
QSlider::handle:horizontal { background: @paper; border: 3px solid @sky; width: 20px; margin: -9px 0px;
    border-radius: 13px; }
QSlider::handle:horizontal:hover { background: @hover; }
QSlider::handle:horizontal:pressed, QSlider::handle:horizontal:focus { background: @sun; }
QSlider::handle:horizontal:disabled { border-color: @line; background: @parchment; }
QSlider::sub-page:horizontal:disabled { background: @line; }

QMenu { background: @paper; border: 2px solid @line; padding: 6px; }
QMenu::item { padding: 8px 28px; border-radius: 8px; color: @ink; }
QMenu::item:selected { background: @hover; }
QMenu::item:disabled { color: #96928a; }
QMenu::separator { height: 2px; background: @line; margin: 6px 10px; }

QGroupBox { border: 2px solid @line; border-radius: 12px; margin-top: 14px; padding: 12px 10px 8px 10px; }
QGroupBox::title { subcontrol-origin: margin; left: 16px; padding: 0px 6px; }
QTabWidget::pane { border: 2px solid @line; border-radius: 12px; background: @paper; top: -2px; }
QTabBar::tab { background: @parchment; color: @ink; border: 2px solid @line; border-top-left-radius: 12px;
    border-top-right-radius: 12px; padding: 10px 20px; margin-right: 4px; }
QTabBar::tab:selected { background: @paper; border-bottom-color: @paper; }
QTabBar::tab:hover:!selected { background: @hover; }
QTabBar::tab:focus { border-color: @sky; }
QProgressBar { background: @paper; border: 2px solid @line; border-radius: 10px; min-height: 20px;
    text-align: center; color: @ink; }
QProgressBar::chunk { background: @sun; border-radius: 8px; }
)");
    const std::pair<const char *, QColor> names[] = {
        {"@parchment", colours::parchment},
        {"@paper", colours::paper},
        {"@line", colours::line},
        {"@ink", colours::ink},
        {"@sky", colours::sky},
        {"@sun", colours::sun},
        {"@hover", colours::hover},
        {"@pressed", colours::pressed},
        {"@checked", colours::checked},
        {"@chosen", colours::chosen},
    };
    for (const auto &[name, colour] : names) {
        sheet.replace(QLatin1String(name), colour.name());
    }
    return sheet;
}

} // namespace

void applyTheme(QApplication &application) {
    auto *style = new ThemeStyle;
    style->setParent(&application);
    QApplication::setStyle(style);
    application.setPalette(warmPalette());
    QFont font("Andika");
    font.setPointSizeF(11);
    application.setFont(font);
    application.setStyleSheet(styleSheet());
}

QPixmap iconPixmap(const QString &name, int size, qreal devicePixelRatio) {
    const int pixels = qRound(size * devicePixelRatio);
    if (name.isEmpty() || pixels <= 0) {
        return {};
    }
    const QString key = QString("lumora-icon %1 %2 %3").arg(name).arg(pixels).arg(devicePixelRatio);
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
