// Free resizing: the photo's frame with eight handles to drag, the photo following. ResizeTool starts it.
#pragma once

#include "tools/canvas/CanvasTool.h"
#include "tools/resize/ResizeHandles.h"
#include "view/MipLevels.h"
#include "view/PhotoTable.h"

#include <QObject>

namespace lumora {

struct AppContext;

/// A finished drag is one undo step. The side or corner opposite the handle stays where it is while dragging. A side is
/// at least one pixel and at most 5000 long, unless it was already longer.
class ResizeByHand : public QObject, public CanvasTool {
    Q_OBJECT

  public:
    /// Both outlive it.
    ResizeByHand(AppContext &ctx, PhotoView &view, QObject *parent = nullptr);

    bool isActive() const { return m_active; }
    /// The frame and its handles, in the view's pixels, where they are now.
    QRectF frame() const;
    ResizeHandles handles() const { return ResizeHandles(frame()); }

    void start() override;
    void end() override;
    void press(const PointerEvent &at) override;
    void move(const PointerEvent &at) override;
    void release(const PointerEvent &at) override;
    void clicked(QPoint pixel) override;
    /// Outside the photo's frame, extended by some pixels on each side.
    bool endsAt(QPoint picture) const override;
    bool hasKeyboardPointer() const override { return true; }
    /// On the handle at the lower right corner, or as near as the view has room.
    std::optional<QPointF> keyboardStart() const override;
    bool isDragging() const override { return !m_grabbed.isNull(); }
    /// Esc cancels the drag or ends free resizing; Enter ends it too.
    bool wantsKey(const QKeyEvent &key) const override;
    void keyPress(const QKeyEvent &key) override;
    void paint(QPainter &painter) override;

  Q_SIGNALS:
    /// Esc or Enter: the user is done.
    void endWanted();
    /// The photo could not be resized because memory allocation failed.
    void failed();

  private:
    QRect dragged(QPointF picture) const;
    void drop();
    void paintPhoto(QPainter &painter);
    void showCursor(const ResizeHandle &handle);

    AppContext &m_ctx;
    PhotoView &m_view;
    MipLevels m_levels;
    PhotoTable m_table;
    bool m_active = false;
    ResizeHandle m_grabbed; ///< null while nothing is dragged
    ResizeHandle m_hovered;
    QRect m_stored;       ///< ResizeFrame: as it was at the start or when the button was released, picture pixels
    QRect m_frame;        ///< the same, while dragged
    QPointF m_grabOffset; ///< from the pointer to the frame's edge, picture pixels
    QPointF m_pointer;    ///< the view's pixels
};

} // namespace lumora
