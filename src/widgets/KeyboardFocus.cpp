#include "widgets/KeyboardFocus.h"

#include "widgets/Theme.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QFocusFrame>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QTabBar>

namespace lumora {

namespace {

bool keyboardUsedLast = false;

bool walksOrPresses(int key) {
    switch (key) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return true;
    default:
        return false;
    }
}

/// The photo, pages and lists have none: lists show their current entry.
bool getsRing(const QWidget *widget) {
    return qobject_cast<const QAbstractButton *>(widget) != nullptr ||
           qobject_cast<const QAbstractSlider *>(widget) != nullptr ||
           qobject_cast<const QAbstractSpinBox *>(widget) != nullptr ||
           qobject_cast<const QComboBox *>(widget) != nullptr || qobject_cast<const QLineEdit *>(widget) != nullptr ||
           qobject_cast<const QPlainTextEdit *>(widget) != nullptr || qobject_cast<const QTabBar *>(widget) != nullptr;
}

} // namespace

KeyboardFocus::KeyboardFocus(QObject *parent) : QObject(parent) {
    qApp->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, &KeyboardFocus::showRing);
}

bool KeyboardFocus::isUsed() {
    return keyboardUsedLast;
}

bool KeyboardFocus::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::KeyPress:
        if (walksOrPresses(static_cast<QKeyEvent *>(event)->key())) {
            use(true);
        }
        break;
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
        use(false);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void KeyboardFocus::use(bool keyboard) {
    keyboardUsedLast = keyboard;
    showRing();
}

void KeyboardFocus::showRing() {
    QWidget *focused = keyboardUsedLast ? QApplication::focusWidget() : nullptr;
    if (focused != nullptr && !getsRing(focused)) {
        focused->update(); // shows it by itself
        focused = nullptr;
    }
    if (m_ring == nullptr && focused != nullptr) {
        m_ring = new QFocusFrame; // belongs to the window whose control it surrounds, and ends with it
    }
    if (m_ring != nullptr) {
        m_ring->setWidget(focused);
        m_ring->raise();
    }
}

void KeyboardFocus::paintRing(QPainter &painter, const QRectF &place, qreal corner) {
    constexpr qreal line = 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    const auto ring = [&](qreal inset, qreal width, const QColor &colour) {
        painter.setPen(QPen(colour, width));
        painter.drawRoundedRect(place.adjusted(inset, inset, -inset, -inset), corner - inset, corner - inset);
    };
    ring(ringWidth / 2.0, ringWidth - 1, colours::paper); // the gap, on any surface
    ring(line / 2, line, colours::focus);
    ring(ringWidth - line / 2, line, colours::focus);
    painter.restore();
}

} // namespace lumora
