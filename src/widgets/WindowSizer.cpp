#include "widgets/WindowSizer.h"

#include "widgets/Theme.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWidget>
#include <QWindow>

namespace lumora {

namespace {

constexpr int corner = 3 * WindowSizer::width; // pixels of an edge that also move the next edge

Qt::CursorShape cursorAt(Qt::Edges edges) {
    if (edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge)) {
        return Qt::SizeFDiagCursor;
    }
    if (edges == (Qt::RightEdge | Qt::TopEdge) || edges == (Qt::LeftEdge | Qt::BottomEdge)) {
        return Qt::SizeBDiagCursor;
    }
    return edges & (Qt::LeftEdge | Qt::RightEdge) ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}

/// One side of the frame. Near its ends it moves two edges.
class Side : public QWidget {
  public:
    Side(Qt::Edge edge, QWidget *window) : QWidget(window), m_edge(edge) {
        setObjectName("WindowEdge");
        setMouseTracking(true);
        setFocusPolicy(Qt::NoFocus);
    }

    void settle() {
        const QRect all = parentWidget()->rect();
        const int width = WindowSizer::width;
        switch (m_edge) {
        case Qt::LeftEdge:
            setGeometry(0, 0, width, all.height());
            break;
        case Qt::RightEdge:
            setGeometry(all.width() - width, 0, width, all.height());
            break;
        case Qt::TopEdge:
            setGeometry(0, 0, all.width(), width);
            break;
        case Qt::BottomEdge:
            setGeometry(0, all.height() - width, all.width(), width);
            break;
        }
    }

  protected:
    void mousePressEvent(QMouseEvent *event) override {
        if (event->button() != Qt::LeftButton) {
            return;
        }
        m_held = edgesAt(event->position().toPoint());
        m_from = event->globalPosition().toPoint();
        m_geometry = window()->geometry();
        QWindow *handle = window()->windowHandle();
        m_following = handle == nullptr || !handle->startSystemResize(m_held);
    }
    void mouseMoveEvent(QMouseEvent *event) override {
        if (!m_following) {
            setCursor(cursorAt(edgesAt(event->position().toPoint())));
            return;
        }
        const QPoint moved = event->globalPosition().toPoint() - m_from;
        const QSize least = window()->minimumSizeHint().expandedTo(window()->minimumSize());
        QRect place = m_geometry;
        if (m_held & Qt::LeftEdge) {
            place.setLeft(qMin(place.left() + moved.x(), place.right() + 1 - least.width()));
        } else if (m_held & Qt::RightEdge) {
            place.setRight(qMax(place.right() + moved.x(), place.left() + least.width() - 1));
        }
        if (m_held & Qt::TopEdge) {
            place.setTop(qMin(place.top() + moved.y(), place.bottom() + 1 - least.height()));
        } else if (m_held & Qt::BottomEdge) {
            place.setBottom(qMax(place.bottom() + moved.y(), place.top() + least.height() - 1));
        }
        window()->setGeometry(place);
    }
    void mouseReleaseEvent(QMouseEvent *) override { m_following = false; }
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        painter.fillRect(rect(), colours::parchment);
        const QRect all = parentWidget()->rect().translated(-pos());
        painter.setPen(colours::faintInk);
        painter.drawRect(all.adjusted(0, 0, -1, -1));
    }

  private:
    Qt::Edges edgesAt(QPoint point) const {
        const bool upright = m_edge == Qt::LeftEdge || m_edge == Qt::RightEdge;
        const int along = upright ? point.y() : point.x();
        const int length = upright ? height() : width();
        Qt::Edges edges = m_edge;
        if (along < corner) {
            edges |= upright ? Qt::TopEdge : Qt::LeftEdge;
        } else if (along >= length - corner) {
            edges |= upright ? Qt::BottomEdge : Qt::RightEdge;
        }
        return edges;
    }

    Qt::Edge m_edge;
    Qt::Edges m_held;
    QPoint m_from;
    QRect m_geometry; ///< of the window, when the edge was taken
    bool m_following = false;
};

} // namespace

void WindowSizer::install(QWidget *window) {
    new WindowSizer(window);
}

WindowSizer::WindowSizer(QWidget *window) : QObject(window), m_window(window) {
    for (const Qt::Edge edge : {Qt::LeftEdge, Qt::RightEdge, Qt::TopEdge, Qt::BottomEdge}) {
        m_edges << new Side(edge, window);
    }
    window->installEventFilter(this);
    settle();
}

void WindowSizer::settle() {
    const bool free = !(m_window->windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen));
    const int margin = free ? width : 0;
    m_window->setContentsMargins(margin, margin, margin, margin);
    for (QWidget *edge : std::as_const(m_edges)) {
        static_cast<Side *>(edge)->settle();
        edge->setVisible(free);
        edge->raise();
    }
}

bool WindowSizer::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::WindowStateChange || event->type() == QEvent::Resize ||
        event->type() == QEvent::Show) {
        settle();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace lumora
