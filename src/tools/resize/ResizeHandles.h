// The places of the eight handles of a frame, hit testing, and the frame after dragging one.
#pragma once

#include <QCursor>
#include <QPointF>
#include <QRectF>
#include <array>

namespace lumora {

/// A side or a corner: -1 left or top, 0 neither, 1 right or bottom.
struct ResizeHandle {
    int across = 0;
    int down = 0;
    bool isNull() const { return across == 0 && down == 0; }
    friend bool operator==(const ResizeHandle &, const ResizeHandle &) = default;
};

/// Corners first: they win where handles of a small frame meet.
inline constexpr std::array<ResizeHandle, 8> resizeHandles{
    {{1, 1}, {-1, -1}, {1, -1}, {-1, 1}, {1, 0}, {0, 1}, {-1, 0}, {0, -1}}};

class ResizeHandles {
  public:
    static constexpr int side = 20;      ///< pixels of a handle
    static constexpr int touchSide = 44; ///< pixels that take a finger

    /// Of a frame in the view's pixels. Handles are inside it, because a click outside has another meaning.
    explicit ResizeHandles(const QRectF &frame) : m_frame(frame) {}

    QRectF place(ResizeHandle handle) const { return square(handle, side); }
    /// The handle under that point, including touch zones; a null one when there is none.
    ResizeHandle at(QPointF point) const;
    /// The pointer over that handle.
    static Qt::CursorShape cursor(ResizeHandle handle);

  private:
    QRectF square(ResizeHandle handle, qreal length) const;

    QRectF m_frame;
};

} // namespace lumora
