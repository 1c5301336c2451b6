// The pixel component that the tools drive: give it a picture, name an operation, take the picture back.
#pragma once

#include <QImage>

namespace lumora {

/// Holds one picture. Every operation answers true when it has changed it and false when it refused (no picture, a
/// bad argument, no memory); the picture then is as before. The given picture itself is never written to.
class EffectEngine {
  public:
    void setPicture(const QImage &picture) { m_picture = picture; }
    const QImage &picture() const { return m_picture; }

    /// White where the luma (ITU-R BT.601) lies above threshold, else black. Threshold 0 to 255, clamped.
    bool blackAndWhite(int threshold, bool limitToRegion);
    /// Mode 0: every channel becomes the luma (ITU-R BT.601). Other modes are refused.
    bool greyscale(int mode, bool limitToRegion);
    bool sepia(bool limitToRegion);
    /// Inverts the channels named, 255 - value; alpha stays.
    bool invert(bool red, bool green, bool blue, bool limitToRegion);

  private:
    QImage m_picture;
};

} // namespace lumora
