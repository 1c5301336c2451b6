// The dark veil over what will be cut off. Crop and free rotation draw it over the photo.
#pragma once

#include <QRectF>

class QPainter;

namespace lumora {

/// The rectangle with its edges on whole pixels of the screen.
QRectF onDevicePixels(const QRectF &rect, double devicePixels);

/// Dims the photo but for what is kept.
void paintDimming(QPainter &painter, const QRectF &kept, const QRectF &photo);

} // namespace lumora
