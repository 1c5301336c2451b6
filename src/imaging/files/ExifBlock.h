// Takes the EXIF data out of a file and lays them out compactly: what comes from a file is read here with limits, so
// that the library that edits them meets no loops, no offsets beyond the end and no values that overlap a thousandfold.
#pragma once

#include "imaging/files/Source.h"

namespace lumora {

struct TiffMetadata {
    QByteArray exif; ///< directories of the picture, of EXIF and of GPS, at most 64 KB; empty when there is nothing
    QByteArray xmp;
    QByteArray iptc;
};

/// Reads TIFF data (TIFF 6.0) from the beginning of the source: a TIFF file, or the EXIF data of another one. Leaves
/// out what describes the stored pixels, the thumbnail, and single values that are too large.
TiffMetadata readTiffMetadata(Source &source);

/// The same for EXIF data in memory, with or without "Exif\0\0" in front.
QByteArray exifBlock(const QByteArray &data);

} // namespace lumora
