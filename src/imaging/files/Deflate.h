// Deflate (RFC 1951) as fast as the processor allows, with ISA-L. Used by the PNG and TIFF writers.
#pragma once

#include <QByteArray>
#include <cstdint>
#include <vector>

namespace lumora {

enum class DeflateWrap {
    Zlib,     ///< a zlib stream of its own (RFC 1950)
    Part,     ///< bare, ended on a byte boundary: the next part follows
    LastPart, ///< bare, with the stream's end
};

/// Empty when memory is refused. The bytes compress about as zlib's fastest level does it.
QByteArray deflated(const std::vector<std::uint8_t> &raw, DeflateWrap wrap);

} // namespace lumora
