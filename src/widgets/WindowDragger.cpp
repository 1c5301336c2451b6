#include "widgets/WindowDragger.h"

#include "widgets/ClickMoveClick.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace lumora {

WindowDragger::WindowDragger(QWidget *handle) : QObject(handle), m_handle(handle) {
    handle->installEventFilter(this);
    setDraggable(*handle, true);
}

void WindowDragger::install(QWidget *handle) {
    new WindowDragger(handle);
}

bool WindowDragger::eventFilter(QObject *watched, QEvent *event) {
    QWidget *window = m_handle->window();
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        if (mouse->button() != Qt::LeftButton) {
            break;
        }
        m_pressed = true;
        m_following = false;
        m_pressedAt = mouse->globalPosition().toPoint();
        m_grip = m_pressedAt - window->pos();
        return true;
    }
    case QEvent::MouseMove: {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        const QPoint at = mouse->globalPosition().toPoint();
        if (m_pressed && (at - m_pressedAt).manhattanLength() >= QApplication::startDragDistance()) {
            m_pressed = false; // a window system that takes over takes the release, too
            m_following =
                ClickMoveClick::isHolding() || !window->windowHandle() || !window->windowHandle()->startSystemMove();
        }
        if (m_following && !window->isMaximized() && !window->isFullScreen()) {
            window->move(at - m_grip);
            return true;
        }
        break;
    }
    case QEvent::MouseButtonRelease:
        m_pressed = false;
        m_following = false;
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace lumora
