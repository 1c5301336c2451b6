// The artwork of the eight frames: drawn for a square picture, laid out for a picture of any size. Frames lays it over
// the photo.
#pragma once

#include <QImage>
#include <QSize>
#include <array>
#include <memory>

namespace lumora {

class FrameDrawing;

inline constexpr int frameCount = 8;

class FrameArtwork {
  public:
    FrameArtwork();
    ~FrameArtwork();

    /// Frame n (1 to 8, the pictures PF1 to PF8) for a picture of that size in pixels: straight alpha, transparent in
    /// the middle. The corners keep their shape whatever the proportions, the pattern of a side is repeated a whole
    /// number of times; all is as large as the picture's shorter side asks. A picture too small for a frame around
    /// anything gets one that is wholly transparent. Null for other numbers, an empty size and when memory is refused.
    QImage picture(int n, QSize size);

  private:
    std::array<std::unique_ptr<FrameDrawing>, frameCount> m_drawings; // read when first asked for
};

} // namespace lumora
