#include "widgets/FingerScroll.h"

#include "base/Finger.h"
#include "widgets/ClickMoveClick.h"
#include "widgets/WidgetAt.h"

#include <QAbstractScrollArea>
#include <QAbstractSlider>
#include <QApplication>
#include <QScrollBar>
#include <QScroller>
#include <QScrollerProperties>
#include <QTimerEvent>
#include <QWindow>
#include <cmath>
#include <utility>

namespace lumora {

namespace {

constexpr int waitTime = 120; // milliseconds until a finger presses: less than a tap takes to look late

/// Qt scrolls areas by two fingers, and loses the release of a single one over them.
void leaveTouchesToMouse(const QWindow &window) {
    if (const QWidget *top = widgetOf(&window)) {
        for (const auto *area : top->findChildren<QAbstractScrollArea *>()) {
            area->viewport()->ungrabGesture(Qt::PanGesture);
        }
    }
}

bool canScroll(const QScrollBar &bar) {
    return bar.maximum() > bar.minimum();
}

/// What a finger on that widget scrolls; null for nothing.
QAbstractScrollArea *scrolledFrom(QWidget *widget) {
    for (; widget != nullptr; widget = widget->isWindow() ? nullptr : widget->parentWidget()) {
        if (qobject_cast<QAbstractSlider *>(widget) != nullptr || isDraggable(*widget).has_value()) {
            return nullptr;
        }
        auto *area = qobject_cast<QAbstractScrollArea *>(widget);
        if (area != nullptr && (canScroll(*area->verticalScrollBar()) || canScroll(*area->horizontalScrollBar()))) {
            return area;
        }
    }
    return nullptr;
}

} // namespace

FingerScroll::FingerScroll(QObject *parent) : QObject(parent) {
    qApp->installEventFilter(this);
}

bool FingerScroll::eventFilter(QObject *watched, QEvent *event) {
    if (m_sends || !watched->isWindowType()) {
        return QObject::eventFilter(watched, event);
    }
    auto &window = *static_cast<QWindow *>(watched);
    const auto fingers = [event] { return isFromFinger(*static_cast<QMouseEvent *>(event)); };
    switch (event->type()) {
    case QEvent::TouchBegin:
        leaveTouchesToMouse(window);
        break;
    case QEvent::MouseButtonPress:
        become(Finger::Up);
        [[fallthrough]];
    case QEvent::MouseButtonDblClick:
        return fingers() && press(window, *static_cast<QMouseEvent *>(event));
    case QEvent::MouseMove:
        return m_finger != Finger::Up && fingers() && move(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseButtonRelease:
        return m_finger != Finger::Up && fingers() && release(*static_cast<QMouseEvent *>(event));
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

bool FingerScroll::press(QWindow &window, const QMouseEvent &event) {
    if (m_finger != Finger::Up) {
        m_press.push_back(std::unique_ptr<QMouseEvent>(event.clone()));
        return true;
    }
    const QWidget *popup = QApplication::activePopupWidget();
    if (popup != nullptr && popup->windowHandle() != &window) {
        return false; // it closes
    }
    m_area = scrolledFrom(widgetAt(&window, event.position().toPoint()));
    if (m_area.isNull()) {
        return false;
    }
    m_window = &window;
    m_global = event.globalPosition();
    m_press.clear();
    m_press.push_back(std::unique_ptr<QMouseEvent>(event.clone()));
    if (scroller().state() == QScroller::Scrolling) { // is caught
        scroller().stop();
        become(Finger::Scrolling);
    } else {
        become(Finger::Waiting);
    }
    return true;
}

bool FingerScroll::move(const QMouseEvent &event) {
    if (m_area.isNull()) {
        become(Finger::Up);
        return false;
    }
    const auto inArea = [this](QPointF global) { return m_area->viewport()->mapFromGlobal(global); };
    if (m_finger != Finger::Scrolling) {
        const QPointF moved = event.globalPosition() - m_global;
        if (moved.manhattanLength() < fingerSlip) {
            return m_finger == Finger::Waiting;
        }
        const bool across = std::abs(moved.x()) > std::abs(moved.y());
        if (!canScroll(across ? *m_area->horizontalScrollBar() : *m_area->verticalScrollBar())) {
            deliverPress();
            become(Finger::Up);
            return false;
        }
        cancelPress();
        become(Finger::Scrolling);
    }
    if (scroller().state() != QScroller::Pressed && scroller().state() != QScroller::Dragging) {
        scroller().handleInput(QScroller::InputPress, inArea(m_global), qint64(event.timestamp()));
    }
    scroller().handleInput(QScroller::InputMove, inArea(event.globalPosition()), qint64(event.timestamp()));
    return true;
}

bool FingerScroll::release(const QMouseEvent &event) {
    const Finger before = m_finger;
    deliverPress();
    become(Finger::Up);
    if (before == Finger::Scrolling && !m_area.isNull()) {
        scroller().handleInput(QScroller::InputRelease, m_area->viewport()->mapFromGlobal(event.globalPosition()),
                               qint64(event.timestamp()));
    }
    return before == Finger::Scrolling;
}

void FingerScroll::timerEvent(QTimerEvent *) {
    deliverPress();
}

void FingerScroll::deliverPress() {
    if (m_finger != Finger::Waiting || m_window.isNull()) {
        return;
    }
    become(Finger::Pressing);
    m_sends = true;
    for (const std::unique_ptr<QMouseEvent> &event : std::exchange(m_press, {})) {
        if (!m_window.isNull()) {
            QCoreApplication::sendEvent(m_window, event.get());
        }
    }
    m_sends = false;
}

/// As if the finger had slid off what it pressed.
void FingerScroll::cancelPress() {
    if (m_finger != Finger::Pressing || m_window.isNull()) {
        return;
    }
    const QPointF outside(-1000, -1000);
    QMouseEvent away(QEvent::MouseMove, outside, m_window->mapToGlobal(outside), Qt::NoButton, Qt::LeftButton, {});
    QMouseEvent up(QEvent::MouseButtonRelease, outside, m_window->mapToGlobal(outside), Qt::LeftButton, Qt::NoButton,
                   {});
    m_sends = true;
    QCoreApplication::sendEvent(m_window, &away);
    if (!m_window.isNull()) {
        QCoreApplication::sendEvent(m_window, &up);
    }
    m_sends = false;
}

void FingerScroll::become(Finger finger) {
    if (m_timer != 0) {
        killTimer(m_timer);
        m_timer = 0;
    }
    m_finger = finger;
    if (finger == Finger::Waiting) {
        m_timer = startTimer(waitTime);
    }
}

QScroller &FingerScroll::scroller() const {
    QScroller &scroller = *QScroller::scroller(m_area->viewport());
    QScrollerProperties properties = scroller.scrollerProperties();
    properties.setScrollMetric(QScrollerProperties::DragStartDistance, 0.0); // fingerSlip has been decided on
    properties.setScrollMetric(QScrollerProperties::VerticalOvershootPolicy, QScrollerProperties::OvershootAlwaysOff);
    properties.setScrollMetric(QScrollerProperties::HorizontalOvershootPolicy, QScrollerProperties::OvershootAlwaysOff);
    scroller.setScrollerProperties(properties);
    return scroller;
}

} // namespace lumora
