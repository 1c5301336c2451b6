// The artwork of the eight frames: drawn for a square picture, laid out for a picture of any size, and laid over the
// photo.
#pragma once

#include <QImage>
#include <QRect>
#include <QSize>

namespace lumora {

inline constexpr int frameCount = 8;

class FrameArtwork {
  public:
    /// The photo in frame n (1 to 8): scaled into the frame's opening, with its proportions, in a picture of the
    /// photo's size. Straight openings show the whole photo; a ragged one hides a little at its edge. A photo too small
    /// for a frame stays as it is. Returns a null picture for other numbers, without a photo and when memory
    /// allocation fails.
    static QImage around(int n, const QImage &photo);
    /// The same with a frame that picture(n, size of the photo) has drawn.
    static QImage around(int n, const QImage &photo, const QImage &frame);

    /// The frame alone (the pictures PF1 to PF8) for a picture of that size in pixels: straight alpha, transparent in
    /// the middle. No band is wider than 0.12 of the shorter side, but for the lower edge of the instant photo.
    /// The corners keep their shape whatever the proportions, the pattern of a side is repeated a whole number of
    /// times. A picture too small for a frame gets a fully transparent one. Returns a null picture for other numbers,
    /// an empty size and when memory allocation fails.
    static QImage picture(int n, QSize size);
    /// Where in such a picture the photo goes, in pixels; empty for other numbers and an empty size.
    static QRect placeOfPhoto(int n, QSize size);
};

} // namespace lumora
