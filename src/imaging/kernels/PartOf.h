// A rectangle of a picture as a view of its own, for operations that need the surroundings of an area.
#pragma once

#include "imaging/Region.h"

#include <algorithm>

namespace lumora {

/// The part of a view in a rectangle, which must be inside the view.
template <typename Byte> BasicPixelView<Byte> partOf(const BasicPixelView<Byte> &view, PixelRect rect) {
    return {view.row(rect.top) + std::ptrdiff_t(4) * rect.left, rect.width(), rect.height(), view.stride};
}

inline ConstPixelView readOnly(PixelView view) {
    return {view.data, view.width, view.height, view.stride};
}

/// The area enlarged by `margin` pixels on each side, clipped to the picture.
inline PixelRect withMargin(PixelRect area, int margin, ConstPixelView picture) {
    return {std::max(area.left - margin, 0), std::max(area.top - margin, 0),
            std::min(area.right + margin, picture.width), std::min(area.bottom + margin, picture.height)};
}

} // namespace lumora
