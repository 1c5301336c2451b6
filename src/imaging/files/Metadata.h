// What a picture file says besides its pixels, of every format that Lumora reads. Called once for a file, by
// PictureFile.
#pragma once

#include "imaging/PictureMetadata.h"
#include "imaging/files/Source.h"

namespace lumora {

constexpr double inchesPerMetre = 1 / 0.0254;

/// Reads the metadata of a file by its content; what is missing, damaged or larger than metadata are stays empty.
/// Allocates at most a few times 256 KB.
PictureMetadata readMetadata(Source &source);

/// The IPTC records in image resources of Photoshop, as JPEG and PNG store them; empty when there are none.
QByteArray iptcInResources(const QByteArray &resources);
/// The reverse.
QByteArray resourcesWithIptc(const QByteArray &iptc);

/// Of HEIF: EXIF data and XMP packet.
PictureMetadata readHeifMetadata(Source &source);

} // namespace lumora
