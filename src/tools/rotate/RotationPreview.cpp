#include "tools/rotate/RotationPreview.h"

#include "imaging/Picture.h"
#include "imaging/Scale.h"
#include "imaging/transforms/Rotate.h"
#include "imaging/transforms/RotatedExtent.h"
#include "imaging/transforms/Transform.h"
#include "view/PhotoView.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace lumora {

namespace {

/// Pixels of the copy: two cores rotate this many in well under a thirtieth of a second. A larger view is shown a
/// little softer during rotation.
constexpr double mostPixels = 4e6;

} // namespace

void RotationPreview::setPhoto(const QImage &photo) {
    m_photo = photo;
    forgetCopy();
}

/// Only the part of the photo within the distance of the farthest view corner from its middle can become visible.
void RotationPreview::makeCopy(QPointF centre, double scale) {
    const QRectF view = m_view.viewport()->rect();
    double reach = 0;
    for (const QPointF corner : {view.topLeft(), view.topRight(), view.bottomLeft(), view.bottomRight()}) {
        reach = std::max(reach, std::hypot(corner.x() - centre.x(), corner.y() - centre.y()) / scale);
    }
    const auto margin = [reach](int side) { return std::max(0, static_cast<int>(std::floor(side / 2.0 - reach - 2))); };
    const int across = std::min(margin(m_photo.width()), (m_photo.width() - 1) / 2);
    const int down = std::min(margin(m_photo.height()), (m_photo.height() - 1) / 2);
    const QImage middle = cropped(m_photo, {across, down, m_photo.width() - across, m_photo.height() - down});
    const double pixels = double(middle.width()) * middle.height();
    m_copyScale = std::min({1.0, scale * m_view.devicePixelRatioF(), std::sqrt(mostPixels / std::max(pixels, 1.0))});
    const auto length = [this](int side) { return std::max(1, static_cast<int>(std::round(side * m_copyScale))); };
    m_copy = scaled(middle, length(middle.width()), length(middle.height()));
    if (m_copy.hasAlphaChannel()) {
        m_copy.convertTo(QImage::Format_ARGB32_Premultiplied);
    }
}

/// The copy turned about its middle, cut to that size.
QImage RotationPreview::turnedCopy(double angle, QSize size) const {
    QImage frame = newPicture(size.width(), size.height(), !m_copy.hasAlphaChannel());
    const PixelView target = writeView(frame);
    if (!target.isEmpty() && !m_copy.isNull()) {
        const ConstPixelView source{m_copy.constBits(), m_copy.width(), m_copy.height(), m_copy.bytesPerLine()};
        rotatePixels(source, target, std::sin(angle), std::cos(angle));
        frame.reinterpretAsFormat(m_copy.format());
    }
    return frame;
}

void RotationPreview::paint(QPainter &painter, QPointF centre, double scale, double degrees) {
    if (m_copy.isNull()) {
        makeCopy(centre, scale);
    }
    const double angle = degrees * std::numbers::pi / 180;
    // The rotated photo on the table, and its visible part.
    const QSizeF whole = QSizeF(rotatedExtent(m_photo.size(), degrees)) * scale;
    const QRectF paper(centre - QPointF(whole.width(), whole.height()) / 2, whole);
    const QRectF viewport = m_view.viewport()->rect();
    const QSizeF visible(2 * std::max(centre.x(), viewport.width() - centre.x()),
                         2 * std::max(centre.y(), viewport.height() - centre.y()));
    const double viewPixels = scale / m_copyScale; // to one of the copy
    const QSizeF needed =
        (visible / viewPixels + QSizeF(2, 2)).boundedTo(QSizeF(rotatedExtent(m_copy.size(), degrees)));
    const QImage frame = turnedCopy(angle, {static_cast<int>(needed.width()), static_cast<int>(needed.height())});

    const qreal devicePixels = m_view.devicePixelRatioF();
    const QPointF origin = m_view.photoRect().topLeft();
    m_table.paintTable(painter, viewport, paper, origin, devicePixels);
    const QSizeF size = QSizeF(frame.size()) * viewPixels;
    QRectF place(centre - QPointF(size.width(), size.height()) / 2, size);
    if (frame.hasAlphaChannel()) {
        m_table.paintChecks(painter, place.intersected(viewport), origin, devicePixels);
    }
    painter.save();
    if (qFuzzyCompare(m_copyScale, scale * devicePixels)) { // pixel for pixel
        place.moveTopLeft(QPointF((place.topLeft() * devicePixels).toPoint()) / devicePixels);
    } else {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
    }
    painter.drawImage(place, frame);
    painter.restore();
}

} // namespace lumora
