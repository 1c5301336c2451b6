// A picture as the file of an undo step: written by the history's thread, read when the step is taken back.
#pragma once

#include <QImage>
#include <stop_token>

namespace lumora {

/// Writes the pixels to the file: differences from the row above, one plane for each colour, no alpha where the
/// picture is opaque; `compress` compresses them with zstd, which takes about four times as long and adds checksums.
/// `threads` work at once, each on strips of its own. Returns the bytes written, or -1 when the disk is full, memory is
/// refused, more than `limit` bytes would be needed or a stop is asked for.
qint64 writeCompressed(int file, const QImage &picture, bool compress, qint64 limit, const std::stop_token &stop,
                       int threads = 1);

/// Reads what writeCompressed wrote into a picture that already has its size and format. False for a file that does not
/// hold these pixels whole, with an errno of 0, and where the system refuses to read it, with its errno.
bool readCompressed(int file, QImage &picture);

/// Writes or reads exactly so many bytes, also in several pieces. False as with the functions above.
bool writeAll(int file, const void *data, size_t size);
bool readAll(int file, void *data, size_t size);

} // namespace lumora
