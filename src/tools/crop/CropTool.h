// Crop: a frame on the photo that the mouse, a finger or the arrow keys move and size, and the cut down to it.
#pragma once

#include "tools/canvas/PanelTool.h"
#include "tools/crop/CropFrame.h"

#include <optional>

namespace lumora {

class CropPanel;

class CropTool : public PanelTool {
    Q_OBJECT

  public:
    CropTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window);

    /// Shows the starting frame and the panel; while it is open it starts again.
    bool open(const QString &key = {}) override;
    bool excludesOthers() const override { return isAtWork(); }
    void accept() override { CropPhoto(); }

    /// Crops the photo to the part inside CropRect, one undo step, and closes the panel. Before a frame is finished
    /// the status line says so; a frame outside the photo is reported and kept.
    void CropPhoto();

    /// Left, top, width and height in picture pixels as they were with the last mouse-up or key; may reach beyond the
    /// photo.
    const QRect &CropRect() const { return m_cropRect; }
    /// A drag or a key has finished a frame since the tool was opened.
    bool CropReady() const { return m_cropReady; }
    /// The current frame on the photo.
    const QRect &frame() const { return m_frame; }

    void end() override;
    void press(const PointerEvent &at) override;
    void move(const PointerEvent &at) override;
    void release(const PointerEvent &at) override;
    bool isDragging() const override { return m_drag.has_value(); }
    bool scrollsAtEdge() const override { return m_drag && m_drag->moved; }
    /// Arrow keys move the frame by a pixel, with Ctrl its lower right corner; with Shift by ten. Enter crops, Esc
    /// leaves.
    bool wantsKey(const QKeyEvent &key) const override;
    void keyPress(const QKeyEvent &key) override;
    void paint(QPainter &painter) override;

  private:
    struct Drag {
        CropGrip grip;
        QRect frame;          ///< when it began
        PointerEvent pressed; ///< how it began
        bool moved = false;   ///< it is more than a click
    };

    void startFrame();
    void takeShape();
    void moveFrame(const QRect &before, CropGrip grip, QPoint by);
    void setFrame(const QRect &frame);
    void finishFrame();
    void showCursor(CropGrip grip);
    QRectF inView(const QRect &picture) const;

    AppContext &m_ctx;
    PhotoView &m_view;
    CropPanel *m_panel;
    QRect m_frame;
    QRect m_cropRect = QRect(0, 0, 0, 0);
    bool m_cropReady = false;
    std::optional<Drag> m_drag;
};

} // namespace lumora
