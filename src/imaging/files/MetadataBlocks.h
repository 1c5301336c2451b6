// Prepares a photo's metadata for a file that is written: what the owner would miss is kept, what no longer holds for
// the changed picture is set right or removed.
#pragma once

#include "imaging/PictureMetadata.h"

#include <QSize>

namespace lumora {

/// The metadata as the writers store them; a part that there is nothing of is empty.
struct MetadataBlocks {
    QByteArray exif; ///< from its TIFF header on, in the processor's byte order, at most 65,527 bytes
    QByteArray xmp;  ///< at most 65,000 bytes
    QByteArray iptc; ///< at most 65,000 bytes
    QMap<QByteArray, QString> texts;
    double dotsPerInchX = 0;
    double dotsPerInchY = 0;
};

/// For a picture of that size in pixels, stored upright and in sRGB. A part that cannot be parsed is left out; nothing
/// is thrown.
MetadataBlocks metadataBlocks(const PictureMetadata &metadata, QSize size, PrivateDetails details);

} // namespace lumora
