// A photo as a recovery copy: what a crash leaves of unsaved work. Written and read by RecoveryFolder.
#pragma once

#include "imaging/PictureMetadata.h"

#include <QImage>
#include <stop_token>

namespace lumora {

/// What is kept of the photo.
struct KeptPhoto {
    QImage picture;
    PictureMetadata metadata = {};
};

enum class CopyRead {
    Done,
    Damaged, ///< cut off, changed, of another program, or larger than a picture may be
    NotNow,  ///< memory was refused or the disk does not answer: the copy may be good
};

/// Writes a header with a checksum, the metadata and the pixels, without loss. False when the disk is full, more than
/// `limit` bytes would be needed, memory is refused or a stop is asked for.
bool writeRecoveryCopy(int file, const KeptPhoto &photo, qint64 limit, const std::stop_token &stop);

/// Reads what writeRecoveryCopy wrote, to the bit. The size is checked against maxPicturePixels and against the
/// file's own before memory for pixels is taken. The photo is not changed unless the result is Done.
CopyRead readRecoveryCopy(int file, KeptPhoto &photo);

} // namespace lumora
