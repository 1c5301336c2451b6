// The animated outline of the selection, drawn over the canvas whichever tool is current. The main window creates it;
// the lasso shows its line with it while it is drawn.
#pragma once

#include "tools/select/DashedLine.h"
#include "view/PhotoView.h"

#include <QBasicTimer>
#include <QObject>
#include <vector>

namespace lumora {

/// The dashes are animated unless the desktop disables animations. A step repaints the view only where the line runs,
/// and a new point of the lasso only its stroke.
class SelectionOutline : public QObject {
    Q_OBJECT

  public:
    /// Both outlive it.
    SelectionOutline(PhotoDocument &document, PhotoView &view, QObject *parent = nullptr);

    /// The lasso's line while it is drawn, not yet closed: adds one point, in picture pixels. It is shown instead of
    /// the selection until clearTrail().
    void addToTrail(PicturePoint point);
    void clearTrail();

  protected:
    void timerEvent(QTimerEvent *event) override;

  private:
    void renew();
    void trace();
    void traceEllipse(const QRectF &box);
    QPointF inDevice(QPointF picture) const;
    void repaint(const QRect &devicePart);
    void repaintLine();
    void paint(QPainter &painter);

    PhotoDocument &m_document;
    PhotoView &m_view;
    std::vector<PicturePoint> m_trail;
    DashedLine m_line;
    QBasicTimer m_timer;
    int m_step = 0;
};

} // namespace lumora
