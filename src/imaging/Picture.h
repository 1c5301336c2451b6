// The image type used throughout Lumora: a QImage of 32 bits per pixel, implicitly shared.
// QImage::Format_RGB32 means that every alpha byte is 255; QImage::Format_ARGB32 (straight alpha) that some may not be.
#pragma once

#include "imaging/PixelView.h"

#include <QImage>

namespace lumora {

/// Width x height in pixels of the largest picture that Lumora takes in: 200 megapixels.
inline constexpr qint64 maxPicturePixels = 200'000'000;

/// A picture with undefined pixels on a pooled buffer (reused when the last picture on it is deleted, so that a change
/// of a large photo costs no page faults). A null QImage when a size is not positive or memory allocation fails.
QImage newPicture(int width, int height, bool opaque = true);

/// While one exists, new pictures of its thread are in ordinary pages of memory. Huge ones make work on a large picture
/// faster, but a virtual machine may have to get each from its host first: a tenth of a second for a photo.
class OrdinaryPages {
  public:
    OrdinaryPages() noexcept;
    ~OrdinaryPages();
    OrdinaryPages(const OrdinaryPages &) = delete;
    OrdinaryPages &operator=(const OrdinaryPages &) = delete;
};

/// Converts any QImage to Lumora's picture format: 32 bits, straight alpha, Format_RGB32 where nothing is transparent.
/// Returns a null picture for a null picture and when memory allocation fails.
QImage toPicture(const QImage &image);

/// The pixels to write to. Detaches the picture from its copies.
PixelView writeView(QImage &picture);

/// The pixels to read.
ConstPixelView readView(const QImage &picture);

/// Returns pooled buffers to the system; call when memory is short.
void releaseKeptBuffers();

} // namespace lumora
