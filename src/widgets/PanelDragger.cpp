#include "widgets/PanelDragger.h"

#include "widgets/ClickMoveClick.h"

#include <QMouseEvent>
#include <QWidget>

namespace lumora {

PanelDragger::PanelDragger(QWidget *panel, const QMargins &beyond) : QObject(panel), m_panel(panel), m_beyond(beyond) {
    panel->installEventFilter(this);
    setDraggable(*panel, true);
}

void PanelDragger::install(QWidget *panel, const QMargins &beyond) {
    new PanelDragger(panel, beyond);
}

bool PanelDragger::eventFilter(QObject *watched, QEvent *event) {
    const auto place = [&] { return m_panel->mapToParent(static_cast<QMouseEvent *>(event)->position().toPoint()); };
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        if (static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton) {
            m_held = true;
            m_grip = place() - m_panel->pos();
            return true;
        }
        break;
    case QEvent::MouseMove:
        if (m_held) {
            const QRect room = m_panel->parentWidget()->rect().marginsAdded(m_beyond);
            const QPoint wanted = place() - m_grip;
            const int mostX = qMax(room.left(), room.right() + 1 - m_panel->width());
            const int mostY = qMax(room.top(), room.bottom() + 1 - m_panel->height());
            m_panel->move(qBound(room.left(), wanted.x(), mostX), qBound(room.top(), wanted.y(), mostY));
            m_panel->update();
            return true;
        }
        break;
    case QEvent::MouseButtonRelease:
    case QEvent::Hide:
        m_held = false;
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace lumora
