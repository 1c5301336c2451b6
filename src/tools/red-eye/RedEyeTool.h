// Red-eye removal: a panel with the size of the eye and the colour that it shines in, a ring of that size as the
// pointer, and a click on each eye.
#pragma once

#include "tools/canvas/PanelTool.h"

#include <QCursor>

namespace lumora {

class RedEyePanel;

class RedEyeTool : public PanelTool {
    Q_OBJECT

  public:
    /// The panel becomes a child of the window. All four outlive the tool.
    RedEyeTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window);

    /// The panel slides in and the photo waits for clicks.
    bool open(const QString &key = {}) override;
    /// Whether clicks work on eyes.
    bool RDMode() const { return isAtWork(); }

    void end() override;
    void press(const PointerEvent &at) override;
    void move(const PointerEvent &at) override;
    /// Removes the red in a circle around the pixel, or darkens the pupil in it that shines in the chosen colour; one
    /// undo step. Where nothing shines like that the status line says so.
    void clicked(QPoint pixel) override;
    bool hasKeyboardPointer() const override { return true; }
    void paint(QPainter &painter) override;

  private:
    void ApplyRedEye();
    void showHint();
    qreal ringRadius() const;
    bool ringFitsPointer() const;
    bool ringIsPainted() const;
    QCursor pointer();
    void refreshPointer();
    void repaintRing(QPointF at);

    AppContext &m_ctx;
    PhotoView &m_view;
    RedEyePanel *m_panel;
    QCursor m_ring;         ///< for the two below
    qreal m_ringRadius = 0; ///< the view's pixels
    qreal m_ringScale = 0;  ///< device pixel ratio
    QPointF m_pointer;      ///< the view's pixels
};

} // namespace lumora
