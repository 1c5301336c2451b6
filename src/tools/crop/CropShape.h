// The shapes that the crop frame can keep, and the frame that has one. Used by the crop tool and its panel.
#pragma once

#include "tools/crop/CropFrame.h"

#include <QRect>
#include <span>

namespace lumora {

/// One button of the crop panel.
struct CropShape {
    enum class Kind { Free, Fixed, WholePhoto };

    const char *button;  ///< object name
    const char *caption; ///< identifier of its text
    const char *icon;
    Kind kind;
    QSize sides; ///< of a fixed shape lying on its longer side
};

/// From left to right; the first is the free frame.
std::span<const CropShape> cropShapes();

/// The frame that keeps to the proportions of `sides` after draggedCropFrame has made `dragged` of it: what was not
/// grabbed stays where it was, and a frame that began on a picture of that size ends there. Pixels of the picture. Of a
/// frame moved as a whole only the place changes.
QRect shapedCropFrame(const QRect &before, const QRect &dragged, CropGrip grip, QSize sides, QSize picture);

/// The largest frame of those proportions inside of the present one, about its middle, on the picture.
QRect cropFrameOfShape(const QRect &frame, QSize sides, QSize picture);

} // namespace lumora
