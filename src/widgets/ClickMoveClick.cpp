#include "widgets/ClickMoveClick.h"

#include "base/Finger.h"
#include "widgets/WidgetAt.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QWindow>

namespace lumora {

namespace {

constexpr char draggableProperty[] = "draggable";

QPointer<ClickMoveClick> clickMoveClick; // while it is on

/// A click in the groove sets a slider and turns a scroll bar's pages at once.
bool isOnHandle(const QAbstractSlider &bar, QPoint place) {
    QStyleOptionSlider option;
    option.initFrom(&bar);
    option.orientation = bar.orientation();
    option.minimum = bar.minimum();
    option.maximum = bar.maximum();
    option.sliderPosition = bar.sliderPosition();
    option.sliderValue = bar.value();
    option.pageStep = bar.pageStep();
    option.upsideDown = bar.invertedAppearance();
    option.state.setFlag(QStyle::State_Horizontal, bar.orientation() == Qt::Horizontal);
    const bool isSlider = qobject_cast<const QSlider *>(&bar) != nullptr;
    const auto handle = isSlider ? QStyle::SC_SliderHandle : QStyle::SC_ScrollBarSlider;
    return bar.style()
        ->subControlRect(isSlider ? QStyle::CC_Slider : QStyle::CC_ScrollBar, &option, handle, &bar)
        .contains(place);
}

bool dragsThere(const QWidget *widget, bool onHandle) {
    for (; widget != nullptr; widget = widget->isWindow() ? nullptr : widget->parentWidget()) {
        if (qobject_cast<const QAbstractSlider *>(widget) != nullptr) {
            return onHandle && widget->isEnabled();
        }
        if (widget->property(draggableProperty).isValid()) {
            return widget->property(draggableProperty).toBool();
        }
        if (widget->focusPolicy() & Qt::ClickFocus) {
            return false; // another control
        }
    }
    return false;
}

} // namespace

ClickMoveClick::ClickMoveClick(QObject *parent) : QObject(parent) {}

void ClickMoveClick::setOn(bool on) {
    if (on && clickMoveClick.isNull()) {
        clickMoveClick = new ClickMoveClick(qApp);
        qApp->installEventFilter(clickMoveClick);
    } else if (!on && !clickMoveClick.isNull()) {
        clickMoveClick->letGo();
        delete clickMoveClick;
    }
}

bool ClickMoveClick::isHolding() {
    return !clickMoveClick.isNull() && clickMoveClick->m_holds;
}

bool ClickMoveClick::eventFilter(QObject *watched, QEvent *event) {
    // What the window system reports, before it is known which widget gets it.
    if (m_sends || !watched->isWindowType()) {
        return QObject::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return press(*static_cast<QWindow *>(watched), *static_cast<QMouseEvent *>(event));
    case QEvent::MouseMove: {
        m_at = static_cast<QMouseEvent *>(event)->globalPosition();
        if (m_holds) {
            send(QEvent::MouseMove, m_at);
        }
        return m_holds;
    }
    case QEvent::MouseButtonRelease:
        return release(*static_cast<QMouseEvent *>(event));
    case QEvent::ShortcutOverride:
        if (m_holds && isEsc(*event)) {
            event->accept(); // no shortcut
            return true;
        }
        break;
    case QEvent::KeyPress:
        if (m_holds && isEsc(*event)) {
            send(QEvent::MouseMove, m_pressedAt);
            m_at = m_pressedAt;
            letGo();
            return true;
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

bool ClickMoveClick::isEsc(QEvent &event) const {
    return static_cast<QKeyEvent &>(event).key() == Qt::Key_Escape;
}

bool ClickMoveClick::press(QWindow &window, const QMouseEvent &event) {
    m_at = event.globalPosition();
    if (m_holds) {
        send(QEvent::MouseMove, m_at); // a finger does not move before it touches
        m_ends = m_ends || event.button() == Qt::LeftButton;
        return true;
    }
    if (event.button() == Qt::LeftButton) {
        m_window = &window;
        m_pressed = widgetAt(&window, event.position().toPoint());
        m_pressedAt = m_at;
        const auto *slider = qobject_cast<const QAbstractSlider *>(m_pressed);
        m_onHandle = slider != nullptr && isOnHandle(*slider, slider->mapFromGlobal(m_at).toPoint());
        if (isFromFinger(event)) { // whose press is held back by others until it moves
            if (event.type() == QEvent::MouseButtonPress) {
                send(QEvent::MouseButtonPress, m_at);
            }
            return true;
        }
    }
    return false;
}

bool ClickMoveClick::release(const QMouseEvent &event) {
    m_at = event.globalPosition();
    if (m_holds) {
        if (m_ends && event.button() == Qt::LeftButton) {
            letGo();
        }
        return true;
    }
    const bool isClick = (m_at - m_pressedAt).manhattanLength() < QApplication::startDragDistance();
    m_holds = event.button() == Qt::LeftButton && isClick && !m_window.isNull() && dragsThere(m_pressed, m_onHandle);
    m_pressed = nullptr;
    if (m_holds) {
        m_window->setMouseGrabEnabled(true); // as while a button is down: beyond the window's edges, too
    }
    return m_holds; // the widget believes that the button is down
}

void ClickMoveClick::send(QEvent::Type type, QPointF global) {
    if (m_window.isNull()) { // closed meanwhile
        m_holds = m_ends = false;
        return;
    }
    const bool moves = type == QEvent::MouseMove;
    QMouseEvent event(type, m_window->mapFromGlobal(global), global, moves ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                      QGuiApplication::keyboardModifiers());
    m_sends = true;
    QCoreApplication::sendEvent(m_window, &event);
    m_sends = false;
}

void ClickMoveClick::letGo() {
    if (m_holds) {
        m_holds = m_ends = false;
        if (!m_window.isNull()) {
            m_window->setMouseGrabEnabled(false);
        }
        send(QEvent::MouseButtonRelease, m_at);
    }
}

void setDraggable(QWidget &widget, bool draggable) {
    widget.setProperty(draggableProperty, draggable);
}

std::optional<bool> isDraggable(const QWidget &widget) {
    const QVariant said = widget.property(draggableProperty);
    return said.isValid() ? std::optional(said.toBool()) : std::nullopt;
}

} // namespace lumora
