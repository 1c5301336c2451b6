#include "tools/stickers/ItemMoves.h"

#include "tools/canvas/KeyboardPointer.h"

#include <QKeyEvent>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace lumora {

namespace {

constexpr double fittedPart = 0.96; // of the photo's width and height, for words that are typed
constexpr double leastSize = 4;     // picture pixels
constexpr double mostPart = 4;      // of the photo's longer side
constexpr double keySize = 1.1;     // a press of + or -
constexpr double keyTurn = 5;       // degrees, a press of [ or ]
constexpr double keyStep = 1;       // pixels of the view
constexpr double longKeyStep = 10;
constexpr double upright = 4;     // degrees from a right angle in which a turn by hand ends upright
constexpr double nearestGrip = 8; // picture pixels from the centre

double bounded(double angle) {
    return angle - 360 * std::floor((angle + 180) / 360);
}

double snapped(double angle) {
    const double right = 90 * std::round(angle / 90);
    return std::abs(angle - right) < upright ? right : angle;
}

double degrees(QPointF direction) {
    return std::atan2(direction.y(), direction.x()) * 180 / std::numbers::pi;
}

} // namespace

Decoration keptOnPhoto(Decoration item, QSize photo) {
    item.centre = {std::clamp<double>(item.centre.x(), 0, photo.width()),
                   std::clamp<double>(item.centre.y(), 0, photo.height())};
    item.size = std::clamp<double>(item.size, leastSize, mostPart * std::max(photo.width(), photo.height()));
    return item;
}

Decoration fittedOnPhoto(Decoration item, QSize photo) {
    const auto boxOf = [](const Decoration &each) { return placeOf(each).mapRect(shapeOf(each).box); };
    const QSizeF before = boxOf(item).size();
    const double fits = fittedPart * std::min(photo.width() / before.width(), photo.height() / before.height());
    item.size *= std::min(1.0, fits);
    const QRectF box = boxOf(item);
    item.centre.rx() += std::max(0.0, -box.left()) - std::max(0.0, box.right() - photo.width());
    item.centre.ry() += std::max(0.0, -box.top()) - std::max(0.0, box.bottom() - photo.height());
    return keptOnPhoto(item, photo);
}

Decoration draggedItem(Decoration item, ItemHandle handle, QPointF from, QPointF to, QSize photo) {
    const QPointF before = from - item.centre;
    const QPointF after = to - item.centre;
    const QPointF by = to - from;
    switch (handle) {
    case ItemHandle::Size:
        item.size *= std::max(nearestGrip, std::hypot(after.x(), after.y())) /
                     std::max(nearestGrip, std::hypot(before.x(), before.y()));
        break;
    case ItemHandle::Turn:
        item.angle = snapped(bounded(item.angle + degrees(after) - degrees(before)));
        break;
    case ItemHandle::Tail:
        item.speaker = placeOf(item).map(shapeOf(item).tail) + by;
        break;
    default:
        item.centre += by;
        break;
    }
    return keptOnPhoto(item, photo);
}

std::optional<Decoration> keyedItem(Decoration item, const QKeyEvent &key, double zoom, QSize photo) {
    const QPointF arrow = arrowStep(key.key());
    if (!arrow.isNull()) {
        const double step = key.modifiers().testFlag(Qt::ShiftModifier) ? longKeyStep : keyStep;
        item.centre += arrow * step / zoom;
        return keptOnPhoto(item, photo);
    }
    switch (key.key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        item.size *= keySize;
        break;
    case Qt::Key_Minus:
        item.size /= keySize;
        break;
    case Qt::Key_BracketLeft:
        item.angle = bounded(item.angle - keyTurn);
        break;
    case Qt::Key_BracketRight:
        item.angle = bounded(item.angle + keyTurn);
        break;
    default:
        return {};
    }
    return keptOnPhoto(item, photo);
}

} // namespace lumora
