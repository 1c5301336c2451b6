#include "tools/crop/CropShape.h"

#include <algorithm>
#include <cmath>

namespace lumora {

namespace {

using enum CropShape::Kind;

const CropShape shapes[] = {
    {"optCropFree", "CropShapeFree", "crop-free", Free, {}},
    {"optCropSquare", "CropShapeSquare", "crop-square", Fixed, {1, 1}},
    {"optCrop4x3", "CropShape4x3", "crop-4x3", Fixed, {4, 3}},
    {"optCrop3x2", "CropShape3x2", "crop-3x2", Fixed, {3, 2}},
    {"optCrop16x9", "CropShape16x9", "crop-16x9", Fixed, {16, 9}},
    {"optCrop10x15", "CropShape10x15", "crop-10x15", Fixed, {15, 10}},
    {"optCropWhole", "CropShapeWhole", "crop-whole", WholePhoto, {}},
};

/// One side of the frame while it is being sized.
struct Side {
    int fixed;   ///< the place that stays: an end, or the middle where no end was grabbed
    int growing; ///< 1 to higher numbers, -1 to lower ones, 0 to both
    int room;    ///< how long it may get

    int begin(int length) const { return growing > 0 ? fixed : growing < 0 ? fixed - length : fixed - length / 2; }
};

Side sideOf(int before, int lengthBefore, int dragged, bool first, bool last, int picture) {
    if (!first && !last) {
        const int middle = before + lengthBefore / 2;
        return {middle, 0, 2 * std::min(middle, picture - middle)};
    }
    const int fixed = first ? before + lengthBefore : before;
    const int growing = dragged < fixed ? -1 : 1;
    return {fixed, growing, growing > 0 ? picture - fixed : fixed};
}

int nearest(double value) {
    return std::max(1, static_cast<int>(std::lround(value)));
}

} // namespace

std::span<const CropShape> cropShapes() {
    return shapes;
}

QRect shapedCropFrame(const QRect &before, const QRect &dragged, CropGrip grip, QSize sides, QSize picture) {
    if (grip.inside) {
        return dragged;
    }
    const Side across = sideOf(before.x(), before.width(), dragged.x(), grip.edges.testFlag(Qt::LeftEdge),
                               grip.edges.testFlag(Qt::RightEdge), picture.width());
    const Side down = sideOf(before.y(), before.height(), dragged.y(), grip.edges.testFlag(Qt::TopEdge),
                             grip.edges.testFlag(Qt::BottomEdge), picture.height());
    // In units of the shape: as long as the side that was dragged farther asks for, and as the picture has room for.
    const double wide = double(dragged.width()) / sides.width();
    const double high = double(dragged.height()) / sides.height();
    double units = across.growing == 0 ? high : down.growing == 0 ? wide : std::max(wide, high);
    if (across.room > 0 && down.room > 0) {
        units = std::min({units, double(across.room) / sides.width(), double(down.room) / sides.height()});
    }
    const QSize size(nearest(units * sides.width()), nearest(units * sides.height()));
    return {QPoint(across.begin(size.width()), down.begin(size.height())), size};
}

QRect cropFrameOfShape(const QRect &frame, QSize sides, QSize picture) {
    const QSize most = frame.size().boundedTo(picture);
    const double units = std::min(double(most.width()) / sides.width(), double(most.height()) / sides.height());
    const QSize size(nearest(units * sides.width()), nearest(units * sides.height()));
    const auto begin = [](int middle, int length, int room) {
        return std::clamp(middle - length / 2, 0, std::max(0, room - length));
    };
    return {QPoint(begin(frame.x() + frame.width() / 2, size.width(), picture.width()),
                   begin(frame.y() + frame.height() / 2, size.height(), picture.height())),
            size};
}

} // namespace lumora
