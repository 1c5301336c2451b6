// The picture that the whole house passes round: a QImage of 32 bits a pixel, shared until written.
// QImage::Format_RGB32 says that every alpha byte is 255; QImage::Format_ARGB32 (straight alpha) that some may not be.
#pragma once

#include "imaging/PixelView.h"

#include <QImage>

namespace lumora {

/// Width x height in pixels of the largest picture that Lumora takes in: 200 megapixels.
inline constexpr qint64 maxPicturePixels = 200'000'000;

/// A picture with undefined pixels on a kept buffer (reused when the last picture on it goes, so that a change of a
/// large photo costs no page faults). A null QImage when a size is not positive or memory is refused.
QImage newPicture(int width, int height, bool opaque = true);

/// Any QImage as a picture of this house: 32 bits, straight alpha, Format_RGB32 where nothing is transparent.
/// A null picture stays null; so does one for which memory is refused.
QImage toPicture(const QImage &image);

/// The pixels to write to. Detaches the picture from those that share it.
PixelView writeView(QImage &picture);

/// The pixels to read.
ConstPixelView readView(const QImage &picture);

/// Gives memory kept for later pictures back to the system; call when memory is short.
void releaseKeptBuffers();

} // namespace lumora
