#include "Controls.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QScrollArea>
#include <QTextEdit>
#include <QWindow>
#include <algorithm>
#include <array>

namespace lumora::play {

namespace {

QString classOf(const QWidget &widget) {
    return QString(widget.metaObject()->className()).section("::", -1);
}

using Match = bool (*)(const QWidget &, const QString &);

bool hasName(const QWidget &widget, const QString &part) {
    return widget.objectName() == part;
}
bool hasKey(const QWidget &widget, const QString &part) {
    return widget.property("key").toString() == part;
}
bool hasClass(const QWidget &widget, const QString &part) {
    return classOf(widget) == part;
}
bool hasCaption(const QWidget &widget, const QString &part) {
    const auto *button = qobject_cast<const QAbstractButton *>(&widget);
    return button != nullptr && withoutMnemonic(button->text()) == part;
}
constexpr std::array<Match, 4> matches = {hasName, hasKey, hasClass, hasCaption};

/// Everything below (and with) `root` that answers to the parts of a name, by one way of matching the last part.
void collect(QWidget *root, const QStringList &parts, Match last, bool withRoot, QList<QWidget *> &found) {
    QList<QWidget *> all = root->findChildren<QWidget *>();
    if (withRoot) {
        all.prepend(root);
    }
    for (QWidget *widget : std::as_const(all)) {
        if (parts.size() == 1) {
            if (last(*widget, parts[0])) {
                found << widget;
            }
        } else if (hasName(*widget, parts[0]) || hasKey(*widget, parts[0]) || hasClass(*widget, parts[0])) {
            collect(widget, parts.mid(1), last, false, found);
        }
    }
}

/// Where to look, the likeliest first.
QList<QWidget *> searchOrder() {
    QList<QWidget *> order;
    const auto add = [&](QWidget *window) {
        if (window != nullptr && !order.contains(window)) {
            order << window;
        }
    };
    add(QApplication::activePopupWidget());
    add(QApplication::activeModalWidget());
    add(QApplication::activeWindow());
    for (QWidget *window : openWindows()) {
        add(window);
    }
    for (QWidget *window : QApplication::topLevelWidgets()) {
        add(window);
    }
    return order;
}

/// Is `widget` in `window` or in a window that belongs to it?
bool belongsTo(const QWidget *widget, const QWidget *window) {
    while (widget != nullptr && widget != window) {
        widget = widget->parentWidget();
    }
    return widget != nullptr;
}

QList<QPoint> candidatePoints(const QWidget &widget) {
    const QRect area = widget.rect();
    QList<QPoint> points = {area.center()};
    if (qobject_cast<const QCheckBox *>(&widget) != nullptr || qobject_cast<const QRadioButton *>(&widget) != nullptr) {
        // A wide check box answers only at its mark and its text.
        const int inset = std::min(12, area.width() / 2);
        points.prepend({widget.isRightToLeft() ? area.right() - inset : area.left() + inset, area.center().y()});
    }
    for (int row = 1; row < 8; ++row) {
        for (int column = 1; column < 8; ++column) {
            points << QPoint(area.width() * column / 8, area.height() * row / 8);
        }
    }
    return points;
}

void scrollIntoView(QWidget &widget) {
    for (QWidget *parent = widget.parentWidget(); parent != nullptr; parent = parent->parentWidget()) {
        if (auto *area = qobject_cast<QScrollArea *>(parent)) {
            area->ensureWidgetVisible(&widget);
        }
    }
}

} // namespace

QString withoutMnemonic(QString text) {
    text.replace("&&", QString(QChar(1)));
    text.remove('&');
    return text.replace(QChar(1), "&");
}

QList<QWidget *> openWindows() {
    QList<QWidget *> windows;
    // QWindows come in the order in which they were made; widgets do not.
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (widget->windowHandle() == window && widget->isVisible() && widget->windowType() != Qt::ToolTip) {
                windows << widget;
            }
        }
    }
    return windows;
}

QString nameOf(const QWidget &widget) {
    return widget.objectName().isEmpty() ? classOf(widget) : widget.objectName();
}

FoundControl findControl(const QString &name) {
    const QStringList parts = name.split('.');
    const QList<QWidget *> order = searchOrder();
    for (const Match last : matches) {
        QList<QWidget *> found;
        for (QWidget *window : order) {
            collect(window, parts, last, true, found);
        }
        const auto visible = std::find_if(found.begin(), found.end(), [](QWidget *one) { return one->isVisible(); });
        if (!found.isEmpty()) {
            return {visible == found.end() ? found.first() : *visible, {}};
        }
    }
    return {nullptr, QString("there is no %1").arg(name)};
}

bool findClickPoint(const QWidget &widget, QPoint &point) {
    const QWidget *window = widget.window();
    const QList<QPoint> candidates = candidatePoints(widget);
    const auto reaches = [&](const QPoint &candidate) {
        const QPoint inWindow = widget.mapTo(window, candidate);
        const QWidget *hit = window->childAt(inWindow);
        return window->rect().contains(inWindow) && (hit == &widget || (hit == nullptr && window == &widget) ||
                                                     (hit != nullptr && widget.isAncestorOf(hit)));
    };
    const auto reached = std::find_if(candidates.begin(), candidates.end(), reaches);
    if (reached == candidates.end()) {
        return false;
    }
    point = *reached;
    return true;
}

QWidget *keyboardWindow() {
    if (QWidget *popup = QApplication::activePopupWidget()) {
        return popup;
    }
    if (QWidget *modal = QApplication::activeModalWidget()) {
        return modal;
    }
    if (QWidget *active = QApplication::activeWindow()) {
        return active;
    }
    const QList<QWidget *> windows = openWindows();
    return windows.isEmpty() ? nullptr : windows.last();
}

void activate(const QWidget &window) {
    QWindow *handle = window.windowHandle();
    if (handle != nullptr && !window.isActiveWindow() && window.windowType() != Qt::Popup) {
        handle->requestActivate();
    }
}

QString obstacle(QWidget &widget) {
    if (!widget.isVisible()) {
        return "it is hidden";
    }
    if (!widget.isEnabled()) {
        return "it is disabled";
    }
    const QWidget *popup = QApplication::activePopupWidget();
    if (popup != nullptr && !belongsTo(&widget, popup)) {
        return QString("the menu %1 is open").arg(nameOf(*popup));
    }
    const QWidget *modal = QApplication::activeModalWidget();
    if (modal != nullptr && popup == nullptr && !belongsTo(&widget, modal)) {
        return QString("the window %1 is in front of it").arg(nameOf(*modal));
    }
    if (widget.window()->windowHandle() == nullptr) {
        return "its window is not on the screen";
    }
    QPoint point;
    if (findClickPoint(widget, point)) {
        return {};
    }
    scrollIntoView(widget);
    return findClickPoint(widget, point) ? QString() : QString("it is covered or out of view");
}

QString valueOf(const QWidget &widget, const QString &property) {
    if (!property.isEmpty()) {
        return widget.property(property.toLatin1().constData()).toString();
    }
    if (const auto *combo = qobject_cast<const QComboBox *>(&widget)) {
        return combo->currentText();
    }
    if (const auto *view = qobject_cast<const QAbstractItemView *>(&widget)) {
        return view->currentIndex().data().toString();
    }
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget)) {
        return withoutMnemonic(button->text());
    }
    if (widget.isWindow()) {
        return widget.windowTitle();
    }
    // Labels, line edits, spin boxes; text edits; sliders and progress bars; group boxes; own widgets of that kind.
    for (const char *name : {"text", "plainText", "value", "title", "caption"}) {
        const QVariant value = widget.property(name);
        if (value.isValid()) {
            return value.toString();
        }
    }
    return widget.accessibleName();
}

} // namespace lumora::play
