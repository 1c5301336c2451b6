// The pixel component that the tools drive: give it a picture, name an operation, take the picture back.
#pragma once

#include "imaging/Region.h"
#include "imaging/transforms/PopArtRow.h"

#include <QImage>
#include <array>
#include <vector>

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
    /// What the closed line through these picture points goes round, see Region::lasso.
    bool setLassoRegion(std::vector<PicturePoint> points);

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
    /// Adds levels, -255 to 255, clamped. The three adjustments of colour take the flag first.
    bool brightness(bool limitToRegion, int amount);
    /// Percent, -100 (middle grey) to 100 (twice as much), clamped.
    bool contrast(bool limitToRegion, int amount);
    /// Percent, -100 (greyscale) to 100 (twice as much), clamped.
    bool saturation(bool limitToRegion, int amount);
    /// Tiles of one colour each, laid from the upper left corner. Sides in pixels, clamped to 1 and to the picture.
    bool mosaic(int tileWidth, int tileHeight, bool limitToRegion);
    /// Strength 0 (already clear to see) to 100, clamped.
    bool highPassSharpen(int strength, bool limitToRegion);
    bool sharpen(bool limitToRegion);
    /// A relief in colour, -10 to 10, clamped; below 0 the light comes from the other side.
    bool colourEmboss(int depth, bool limitToRegion);
    /// Coefficients row by row, clamped to 16 bits, refused unless finite; the offset is in levels.
    bool convolve(const std::array<float, 9> &coefficients, int offset, bool limitToRegion);
    /// The picture that texture() repeats over the picture; it stays until another one is set.
    void setTexture(const QImage &picture) { m_texture = picture; }
    /// Fade in percent, 0 (the texture in full) to 100 (nothing of it), clamped. Layout 0 is tiled; others are refused,
    /// and so is an engine without a texture.
    bool texture(int fade, int layout, bool limitToRegion);
    /// A wall of tiles over the whole picture. Sides in pixels, clamped to 1 and to the picture.
    bool tile(int tileWidth, int tileHeight);
    /// Style 1 to 4 (ReflectionStyle) over the whole picture; others are refused.
    bool reflection(int style);
    /// Turns the whole picture about its vertical axis before a background. Degrees, -60 to 60, above 0 with the right
    /// side away; channels 0 to 255; all clamped.
    bool perspective(int angle, int red, int green, int blue);
    /// The brush's radius in pixels, 0 to 100, clamped.
    bool oilPainting(int brush, bool limitToRegion);
    /// Gaussian look, the amount is the radius in pixels, 0 to 100, clamped.
    bool blur(int amount, bool limitToRegion);
    /// Keeps colours near the given one and turns the others grey, see ColourFocus.h. Channels 0 to 255, tolerance 0 to
    /// 180 degrees of hue, all clamped.
    bool colourFocus(int red, int green, int blue, int tolerance, bool limitToRegion);

    /// A quarter turn of the whole picture: its sides are exchanged.
    bool quarterTurn(bool clockwise);
    /// Top to bottom.
    bool flip();
    /// The frame that frameOverlay() lays over the picture; it stays until another one is set.
    void setOverlay(const QImage &picture) { m_overlay = picture; }
    /// Lays the frame, stretched to the picture, over it; refused without one.
    bool frameOverlay(bool limitToRegion);
    /// Four prints side by side of the whole picture, see PopArtRow.h. The sides change.
    bool popArtRow(const PopArtPairs &pairs);

  private:
    enum class Shape { None, Rectangle, Ellipse, Lasso };

    bool take(const QImage &result);
    bool isOpaque() const { return m_picture.format() == QImage::Format_RGB32; }
    Region currentRegion() const;
    template <typename Operation> bool run(const Operation &operation, bool limitToRegion);

    QImage m_picture;
    QImage m_texture;
    QImage m_overlay;
    Shape m_shape = Shape::None;
    PixelRect m_box; ///< of a rectangle or an ellipse, as it was given
    std::vector<PicturePoint> m_lasso;
};

} // namespace lumora
