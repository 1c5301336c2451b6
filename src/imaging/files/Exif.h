// What Lumora uses of EXIF data: which way is up, and the thumbnail that cameras store.
#pragma once

#include <QByteArray>

namespace lumora {

struct Exif {
    int orientation = 1;  ///< 1 to 8; 1 where the tag is missing or wrong
    QByteArray thumbnail; ///< a JPEG file, or empty
};

/// Parses EXIF data from its TIFF header on, with or without "Exif\0\0" in front. Garbage gives the defaults.
Exif readExif(const QByteArray &data);

} // namespace lumora
