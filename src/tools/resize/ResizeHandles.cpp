#include "tools/resize/ResizeHandles.h"

#include <algorithm>

namespace lumora {

/// The square inside the frame at that side or corner.
QRectF ResizeHandles::square(ResizeHandle handle, qreal length) const {
    const auto along = [length](int where, qreal first, qreal last) {
        return where < 0 ? first : where > 0 ? last - length : (first + last - length) / 2;
    };
    return {along(handle.across, m_frame.left(), m_frame.right()), along(handle.down, m_frame.top(), m_frame.bottom()),
            length, length};
}

ResizeHandle ResizeHandles::at(QPointF point) const {
    // The zones of a small frame share it in thirds.
    const qreal least = std::min(m_frame.width(), m_frame.height()) / 3;
    const qreal zone = std::clamp<qreal>(least, side, touchSide);
    const auto under = [&](qreal length) {
        const auto *const found = std::ranges::find_if(
            resizeHandles, [&](ResizeHandle handle) { return square(handle, length).contains(point); });
        return found == resizeHandles.end() ? ResizeHandle() : *found;
    };
    const ResizeHandle drawn = under(side);
    return drawn.isNull() ? under(zone) : drawn;
}

Qt::CursorShape ResizeHandles::cursor(ResizeHandle handle) {
    if (handle.isNull()) {
        return Qt::ArrowCursor;
    }
    if (handle.across == 0 || handle.down == 0) {
        return handle.across == 0 ? Qt::SizeVerCursor : Qt::SizeHorCursor;
    }
    return handle.across == handle.down ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
}

} // namespace lumora
