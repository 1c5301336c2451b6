// Details of a photo that can be told from one another, for the cards of a memory game.
#pragma once

#include <QImage>
#include <QList>
#include <QRectF>

namespace lumora {

inline constexpr int detailsOfPhoto = 6;

/// Squares of the photo in fractions of its width and height, none on another: of twelve or more that are spread over
/// it, those that differ most. Always so many; none for a null picture. A picture of some hundred pixels is enough.
QList<QRectF> differingDetails(const QImage &picture);

} // namespace lumora
