#include "tools/canvas/TargetCursor.h"

#include "widgets/Pointers.h"
#include "widgets/Theme.h"

#include <QPixmap>
#include <QPoint>

namespace lumora {

namespace {

constexpr int side = 32; // pixels of a drawing
/// Of the drawings target1 to target6, in their own pixels.
constexpr QPoint hotSpots[] = {{4, 3}, {3, 29}, {16, 16}, {4, 29}, {4, 3}, {16, 16}};

} // namespace

QCursor targetCursor(int image, qreal devicePixelRatio) {
    if (image < 1 || image > int(std::size(hotSpots))) {
        return {};
    }
    const int scale = pointerScale();
    const QPixmap picture = iconPixmap(QString(":/cursors/target%1.svg").arg(image), scale * side, devicePixelRatio);
    const QPoint hotSpot = scale * hotSpots[image - 1];
    return picture.isNull() ? QCursor() : QCursor(picture, hotSpot.x(), hotSpot.y());
}

} // namespace lumora
