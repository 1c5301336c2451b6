#include "imaging/transforms/RotatedExtent.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lumora {

namespace {

/// What sine and cosine are off by their own rounding, over the longest picture.
constexpr double tolerance = 1e-6;

struct Rotation {
    double sine, cosine;
};

Rotation turnBy(double degrees) {
    const double angle = degrees * std::numbers::pi / 180;
    return {std::sin(angle), std::cos(angle)};
}

/// Whether a rotated picture has a pixel for each of the four neighbours that the pixel (x, y) of the result mixes.
bool isCovered(QSize picture, QSize extent, Rotation turn, int x, int y) {
    const double right = x + 0.5 - extent.width() / 2.0;
    const double down = y + 0.5 - extent.height() / 2.0;
    const auto within = [](double at, int side) { return at >= -tolerance && at <= side - 1 + tolerance; };
    return within(turn.cosine * right + turn.sine * down + picture.width() / 2.0 - 0.5, picture.width()) &&
           within(turn.cosine * down - turn.sine * right + picture.height() / 2.0 - 0.5, picture.height());
}

/// The corners say it of all pixels, because a rotated picture is convex.
bool isCovered(QSize picture, QSize extent, Rotation turn, const QRect &part) {
    return isCovered(picture, extent, turn, part.left(), part.top()) &&
           isCovered(picture, extent, turn, part.right(), part.top()) &&
           isCovered(picture, extent, turn, part.left(), part.bottom()) &&
           isCovered(picture, extent, turn, part.right(), part.bottom());
}

/// The largest of these proportions.
QRect largestCovered(QSize picture, QSize extent, Rotation turn, QSize proportions) {
    const double wide = std::abs(proportions.width() * turn.cosine) + std::abs(proportions.height() * turn.sine);
    const double high = std::abs(proportions.width() * turn.sine) + std::abs(proportions.height() * turn.cosine);
    const double share = std::min(picture.width() / wide, picture.height() / high);
    const int longer = std::max(proportions.width(), proportions.height());
    // What covers whole pixels is at most two pixels smaller; in a picture of a few pixels more.
    for (int side = static_cast<int>(std::ceil(longer * share)) + 1; side >= 1; --side) {
        const auto scaled = [&](int length) {
            return std::max(1, static_cast<int>(std::lround(double(length) * side / longer)));
        };
        const QSize size(scaled(proportions.width()), scaled(proportions.height()));
        if (size.width() > extent.width() || size.height() > extent.height()) {
            continue;
        }
        // In the middle, or half a pixel beside it.
        const QSize spare = extent - size;
        for (const int left : {spare.width() / 2, (spare.width() + 1) / 2}) {
            for (const int top : {spare.height() / 2, (spare.height() + 1) / 2}) {
                const QRect part(QPoint(left, top), size);
                if (isCovered(picture, extent, turn, part)) {
                    return part;
                }
            }
        }
    }
    return {};
}

} // namespace

QSize rotatedExtent(QSize picture, double degrees) {
    const Rotation turn = turnBy(degrees);
    const auto side = [&](int along, int across) {
        return static_cast<int>(std::ceil(std::abs(along * turn.cosine) + std::abs(across * turn.sine) - tolerance));
    };
    return {side(picture.width(), picture.height()), side(picture.height(), picture.width())};
}

QRect insideRotated(QSize picture, double degrees) {
    const QSize extent = rotatedExtent(picture, degrees);
    const Rotation turn = turnBy(degrees);
    const QRect lying = largestCovered(picture, extent, turn, picture);
    const QRect standing = largestCovered(picture, extent, turn, picture.transposed());
    const auto pixels = [](const QRect &part) { return qint64(part.width()) * part.height(); };
    return pixels(standing) > pixels(lying) ? standing : lying;
}

} // namespace lumora
