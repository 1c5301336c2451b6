#include "imaging/files/Deflate.h"

#include <isa-l/igzip_lib.h>
#include <zlib.h>

namespace lumora {

QByteArray deflated(const std::vector<std::uint8_t> &raw, DeflateWrap wrap) {
    constexpr unsigned level = 1; // higher ones take longer for nothing on photographs
    std::vector<std::uint8_t> levelMemory(ISAL_DEF_LVL1_DEFAULT);
    constexpr uLong marker = 16; // more than what ends a part
    QByteArray result(static_cast<qsizetype>(compressBound(raw.size()) + marker), Qt::Uninitialized);
    isal_zstream stream;
    isal_deflate_init(&stream);
    stream.level = level;
    stream.level_buf = levelMemory.data();
    stream.level_buf_size = static_cast<std::uint32_t>(levelMemory.size());
    stream.gzip_flag = wrap == DeflateWrap::Zlib ? IGZIP_ZLIB : IGZIP_DEFLATE;
    stream.end_of_stream = wrap != DeflateWrap::Part;
    stream.flush = wrap == DeflateWrap::Part ? SYNC_FLUSH : NO_FLUSH;
    stream.next_in = const_cast<std::uint8_t *>(raw.data());
    stream.avail_in = static_cast<std::uint32_t>(raw.size());
    stream.next_out = reinterpret_cast<std::uint8_t *>(result.data());
    stream.avail_out = static_cast<std::uint32_t>(result.size());
    if (isal_deflate(&stream) != COMP_OK || stream.avail_in > 0 || stream.avail_out == 0) {
        return {};
    }
    result.resize(static_cast<qsizetype>(stream.total_out));
    return result;
}

} // namespace lumora
