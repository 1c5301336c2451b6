// A rectangle of a picture, seen as a picture of its own: for operations that work on the surroundings of an area.
#pragma once

#include "imaging/Region.h"

#include <algorithm>

namespace lumora {

/// The part of a view in a rectangle that lies within it.
template <typename Byte> BasicPixelView<Byte> partOf(const BasicPixelView<Byte> &view, PixelRect rect) {
    return {view.row(rect.top) + std::ptrdiff_t(4) * rect.left, rect.width(), rect.height(), view.stride};
}

inline ConstPixelView readOnly(PixelView view) {
    return {view.data, view.width, view.height, view.stride};
}

/// The area and what lies up to `margin` pixels from it, as far as the picture goes.
inline PixelRect withMargin(PixelRect area, int margin, ConstPixelView picture) {
    return {std::max(area.left - margin, 0), std::max(area.top - margin, 0),
            std::min(area.right + margin, picture.width), std::min(area.bottom + margin, picture.height)};
}

} // namespace lumora
