// Turning a stored picture upright. Called once for a file, by PictureFile.
#pragma once

#include <QImage>

namespace lumora {

/// True for the orientations (5 to 8) that swap width and height.
bool swapsSides(int orientation);

/// The picture, stored with EXIF orientation 1 to 8, turned upright; as it is for 1 and for any other number. A null
/// picture when memory for the turned one is refused.
QImage turnedUpright(const QImage &picture, int orientation);

} // namespace lumora
