// Scrolls the photo while a drag is held at the view's edge or beyond it. CanvasMouse uses it for the tools that ask.
#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPoint>

class QAbstractScrollArea;

namespace lumora {

class EdgeScroller : public QObject {
    Q_OBJECT

  public:
    explicit EdgeScroller(QAbstractScrollArea &view) : m_view(view) {}

    /// A drag from one point to another, in the view's pixels. Near an edge or beyond it the photo scrolls that
    /// way, faster the farther out, until the next call, stop() or the edge of the photo.
    void drag(QPointF from, QPointF to);
    void stop() { m_timer.stop(); }

  Q_SIGNALS:
    /// Another part of the photo is under the pointer.
    void scrolled();

  protected:
    void timerEvent(QTimerEvent *event) override;

  private:
    QAbstractScrollArea &m_view;
    QPoint m_step;
    QBasicTimer m_timer;
};

} // namespace lumora
