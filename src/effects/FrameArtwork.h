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
    /// number of times; everything is scaled by the picture's shorter side. A picture too small for a frame gets a
    /// fully transparent one. Returns a null picture for other numbers, an empty size and when memory allocation fails.
    QImage picture(int n, QSize size);

  private:
    std::array<std::unique_ptr<FrameDrawing>, frameCount> m_drawings; // read on first use
};

} // namespace lumora
