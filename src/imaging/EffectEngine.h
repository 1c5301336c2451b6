// The pixel component that the tools drive: give it a picture, name an operation, take the picture back.
#pragma once

#include "imaging/Region.h"

#include <QImage>

namespace lumora {

/// Holds one picture and a working region. Every operation answers true when it has been done and false when it
/// refused (no picture, a bad argument, no memory); the picture then is as before. The given picture itself is never
/// written to. With `limitToRegion` nothing outside the working region changes; while none is set, that is the whole
/// picture.
class EffectEngine {
  public:
    /// A picture as Picture.h describes it. The region stays; it is cut to each picture anew.
    void setPicture(const QImage &picture) { m_picture = picture; }
    const QImage &picture() const { return m_picture; }

    void clearRegion() { m_shape = Shape::None; }
    /// Picture pixels; right and bottom are the first outside. Any integers; what lies off the picture is ignored.
    bool setRectangularRegion(int left, int top, int right, int bottom);
    /// The ellipse that fills the box between two opposite corners in picture pixels.
    bool setEllipticalRegion(int x1, int y1, int x2, int y2);

    /// White where the luma (ITU-R BT.601) lies above threshold, else black. Threshold 0 to 255, clamped.
    bool blackAndWhite(int threshold, bool limitToRegion);
    /// Mode 0: every channel becomes the luma (ITU-R BT.601). Other modes are refused.
    bool greyscale(int mode, bool limitToRegion);
    bool sepia(bool limitToRegion);
    /// Inverts the channels named, 255 - value; alpha stays.
    bool invert(bool red, bool green, bool blue, bool limitToRegion);
    /// Inverts each channel that lies above its threshold (0 to 255, clamped); with `above` false, at or below it.
    bool solarise(int red, int green, int blue, bool above, bool limitToRegion);
    /// Shades of one colour, from black through the colour to white. Channels 0 to 255, clamped.
    bool colourise(int red, int green, int blue, bool limitToRegion);
    /// Tiles of one colour each, laid from the upper left corner. Sides in pixels, clamped to 1 and to the picture.
    bool mosaic(int tileWidth, int tileHeight, bool limitToRegion);
    /// Gaussian look, the amount is the radius in pixels, 0 to 100, clamped.
    bool blur(int amount, bool limitToRegion);

  private:
    enum class Shape { None, Rectangle, Ellipse };

    bool isOpaque() const { return m_picture.format() == QImage::Format_RGB32; }
    Region currentRegion() const;
    template <typename Operation> bool run(const Operation &operation, bool limitToRegion);

    QImage m_picture;
    Shape m_shape = Shape::None;
    PixelRect m_box; ///< of the region's shape, as it was given
};

} // namespace lumora
