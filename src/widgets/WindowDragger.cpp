#include "widgets/WindowDragger.h"

#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace lumora {

WindowDragger::WindowDragger(QWidget *handle) : QObject(handle), m_handle(handle) {
    handle->installEventFilter(this);
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
        m_grip = mouse->globalPosition().toPoint() - window->pos();
        m_following = !window->windowHandle() || !window->windowHandle()->startSystemMove();
        return true;
    }
    case QEvent::MouseMove:
        if (m_following && !window->isMaximized() && !window->isFullScreen()) {
            window->move(static_cast<QMouseEvent *>(event)->globalPosition().toPoint() - m_grip);
            return true;
        }
        break;
    case QEvent::MouseButtonRelease:
        m_following = false;
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace lumora
