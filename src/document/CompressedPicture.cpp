#include "document/CompressedPicture.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <unistd.h>
#include <vector>
#include <zstd.h>

namespace lumora {

namespace {

// Rows are written in strips of about this many bytes: small enough for the processor's cache, large enough for zstd.
constexpr qint64 stripBytes = 1 << 20;

int rowsPerStrip(int width) {
    return static_cast<int>(std::clamp<qint64>(stripBytes / (qint64{4} * width), 1, 4096));
}

int planesOf(const QImage &picture) {
    return picture.format() == QImage::Format_RGB32 ? 3 : 4;
}

struct StripHeader {
    quint32 bytes = 0;      ///< of the strip in the file
    quint32 compressed = 0; ///< 1: a zstd frame
};

bool writeAll(int file, const void *data, size_t size) {
    const auto *bytes = static_cast<const char *>(data);
    while (size > 0) {
        const ssize_t written = ::write(file, bytes, size);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        bytes += written;
        size -= static_cast<size_t>(written);
    }
    return true;
}

bool readAll(int file, void *data, size_t size) {
    auto *bytes = static_cast<char *>(data);
    while (size > 0) {
        const ssize_t got = ::read(file, bytes, size);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return false;
        }
        bytes += got;
        size -= static_cast<size_t>(got);
    }
    return true;
}

// Four bytes side by side, each modulo 256.
quint32 subtractBytes(quint32 a, quint32 b) {
    constexpr quint32 top = 0x80808080;
    return ((a | top) - (b & ~top)) ^ ((a ^ ~b) & top);
}

quint32 addBytes(quint32 a, quint32 b) {
    constexpr quint32 top = 0x80808080;
    return ((a & ~top) + (b & ~top)) ^ ((a ^ b) & top);
}

/// The strip's planes, one behind the other. The row above its first one counts as zero, so that strips are
/// independent.
void splitStrip(const QImage &picture, int top, int rows, int planes, quint8 *out) {
    const auto width = static_cast<size_t>(picture.width());
    const size_t plane = width * static_cast<size_t>(rows);
    const std::vector<QRgb> zeros(width);
    const QRgb *above = zeros.data();
    for (int y = top; y < top + rows; ++y, out += width) {
        const auto *const row = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        for (size_t x = 0; x < width; ++x) {
            const quint32 difference = subtractBytes(row[x], above[x]);
            out[x] = static_cast<quint8>(difference);
            out[x + plane] = static_cast<quint8>(difference >> 8);
            out[x + 2 * plane] = static_cast<quint8>(difference >> 16);
            if (planes == 4) {
                out[x + 3 * plane] = static_cast<quint8>(difference >> 24);
            }
        }
        above = row;
    }
}

void joinStrip(QImage &picture, int top, int rows, int planes, const quint8 *in) {
    const auto width = static_cast<size_t>(picture.width());
    const size_t plane = width * static_cast<size_t>(rows);
    const std::vector<QRgb> zeros(width);
    const QRgb *above = zeros.data();
    const QRgb opaque = planes == 3 ? 0xff000000 : 0;
    for (int y = top; y < top + rows; ++y, in += width) {
        auto *const row = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (size_t x = 0; x < width; ++x) {
            quint32 difference = in[x] | quint32{in[x + plane]} << 8 | quint32{in[x + 2 * plane]} << 16;
            if (planes == 4) {
                difference |= quint32{in[x + 3 * plane]} << 24;
            }
            row[x] = addBytes(difference, above[x]) | opaque;
        }
        above = row;
    }
}

} // namespace

qint64 writeCompressed(int file, const QImage &picture, bool compress, qint64 limit, const std::stop_token &stop) {
    const int planes = planesOf(picture);
    const int stripRows = rowsPerStrip(picture.width());
    std::vector<quint8> strip(static_cast<size_t>(planes) * picture.width() * stripRows);
    std::vector<quint8> compressed(compress ? ZSTD_compressBound(strip.size()) : 0);
    const std::unique_ptr<ZSTD_CCtx, size_t (*)(ZSTD_CCtx *)> context(ZSTD_createCCtx(), ZSTD_freeCCtx);
    qint64 total = 0;
    for (int top = 0; top < picture.height(); top += stripRows) {
        const int rows = std::min(stripRows, picture.height() - top);
        const size_t size = static_cast<size_t>(planes) * picture.width() * rows;
        splitStrip(picture, top, rows, planes, strip.data());
        StripHeader header{static_cast<quint32>(size), 0};
        if (compress && context != nullptr) {
            const size_t squeezed =
                ZSTD_compressCCtx(context.get(), compressed.data(), compressed.size(), strip.data(), size, 1);
            if (ZSTD_isError(squeezed) == 0) {
                header = {static_cast<quint32>(squeezed), 1};
            }
        }
        total += static_cast<qint64>(sizeof header) + header.bytes;
        const quint8 *const data = header.compressed == 1 ? compressed.data() : strip.data();
        if (stop.stop_requested() || total > limit || !writeAll(file, &header, sizeof header) ||
            !writeAll(file, data, header.bytes)) {
            return -1;
        }
    }
    return total;
}

bool readCompressed(int file, QImage &picture) {
    const int planes = planesOf(picture);
    const int stripRows = rowsPerStrip(picture.width());
    std::vector<quint8> strip(static_cast<size_t>(planes) * picture.width() * stripRows);
    std::vector<quint8> compressed(ZSTD_compressBound(strip.size()));
    for (int top = 0; top < picture.height(); top += stripRows) {
        const int rows = std::min(stripRows, picture.height() - top);
        const size_t size = static_cast<size_t>(planes) * picture.width() * rows;
        StripHeader header;
        if (!readAll(file, &header, sizeof header) || header.bytes > compressed.size()) {
            return false;
        }
        std::vector<quint8> &target = header.compressed == 1 ? compressed : strip;
        if ((header.compressed == 0 && header.bytes != size) || !readAll(file, target.data(), header.bytes)) {
            return false;
        }
        if (header.compressed == 1 &&
            ZSTD_decompress(strip.data(), strip.size(), compressed.data(), header.bytes) != size) {
            return false;
        }
        joinStrip(picture, top, rows, planes, strip.data());
    }
    return true;
}

} // namespace lumora
