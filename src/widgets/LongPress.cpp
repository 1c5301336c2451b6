#include "widgets/LongPress.h"

#include <QAbstractButton>
#include <QMouseEvent>
#include <utility>

namespace lumora {

LongPress::LongPress(QAbstractButton *button) : QObject(button), m_button(button) {
    m_timer.setSingleShot(true);
    m_timer.setInterval(time);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        m_held = true;
        m_button->setDown(false);
        Q_EMIT held();
    });
    button->installEventFilter(this);
}

bool LongPress::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        m_held = false;
        if (static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton) {
            m_timer.start();
        }
        break;
    case QEvent::MouseMove: // while held, a move over the button would press it again
        if (!m_button->rect().contains(static_cast<QMouseEvent *>(event)->position().toPoint())) {
            m_timer.stop();
        }
        return m_held;
    case QEvent::MouseButtonRelease:
        m_timer.stop();
        return std::exchange(m_held, false);
    case QEvent::Hide:
    case QEvent::EnabledChange:
        m_timer.stop();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace lumora
