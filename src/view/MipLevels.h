// The mip levels of the photo: half, a quarter, an eighth and a sixteenth of its size, so that a view of a large photo
// paints from few pixels.
#pragma once

#include <QImage>
#include <array>

namespace lumora {

class MipLevels {
  public:
    /// A picture to paint from, and how many pixels of the photo one pixel of it represents.
    struct Level {
        QImage picture;
        int factor = 1;
    };

    /// The smallest level that need not be enlarged to show the photo at `scale`, of a factor of `coarsest` at most.
    /// Made straight from the photo when first asked for and kept until another photo is given; the photo itself when
    /// memory for a level is refused.
    Level forScale(const QImage &photo, double scale, double coarsest = 16);

  private:
    std::array<QImage, 4> m_levels; ///< factors 2, 4, 8, 16
    qint64 m_photo = 0;             ///< cache key of the photo that they were made from
};

} // namespace lumora
