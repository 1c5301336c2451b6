// Red-eye removal: a panel with the size of the eye, a ring of that size as the pointer, and a click on each eye.
#pragma once

#include "tools/canvas/CanvasTool.h"

#include <QCursor>
#include <QObject>

namespace lumora {

struct AppContext;
class CanvasMouse;
class RedEyePanel;
class SlidingPanel;

class RedEyeTool : public QObject, public CanvasTool {
    Q_OBJECT

  public:
    /// The panel becomes a child of the window. All four outlive the tool.
    RedEyeTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window);

    SlidingPanel *panel() const;

    /// cmdTool6 was pressed: the panel slides in and the photo waits for clicks. Nothing without a photo.
    void open();
    /// Ends the tool: panel, pointer and flag. Nothing while it is not current.
    void close();

    /// Makes the tool current and the pointer the ring; the region that was marked is no longer shown.
    void ApplyRedEye();
    /// Whether clicks take out red, and the pointer that goes with it.
    void setRDMode(bool on);
    bool RDMode() const;

    void end() override;
    void press(const PointerEvent &at) override;
    void move(const PointerEvent &at) override;
    /// Esc ends the tool.
    bool wantsKey(const QKeyEvent &key) const override;
    void keyPress(const QKeyEvent &key) override;
    void paint(QPainter &painter) override;

  Q_SIGNALS:
    void hideFloatingToolbars();
    /// The Arrow tool is to become the current one.
    void arrowWanted();
    void message(const QString &text, bool good);

  private:
    void leave();
    void click(QPoint pixel);
    qreal ringRadius() const;
    bool ringFitsPointer() const;
    QCursor pointer();
    void refreshPointer();
    void repaintRing(QPointF at);

    AppContext &m_ctx;
    PhotoView &m_view;
    CanvasMouse &m_mouse;
    RedEyePanel *m_panel;
    QCursor m_ring;         ///< for the two below
    qreal m_ringRadius = 0; ///< the view's pixels
    qreal m_ringScale = 0;  ///< device pixel ratio
    QPointF m_pointer;      ///< the view's pixels
};

} // namespace lumora
