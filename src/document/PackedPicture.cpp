#include "document/PackedPicture.h"

#include "imaging/Picture.h"

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

int rowsPerStrip(int width) { return static_cast<int>(std::clamp<qint64>(stripBytes / (qint64{4} * width), 1, 4096)); }

int planesOf(const QImage &picture) { return picture.format() == QImage::Format_RGB32 ? 3 : 4; }

struct StripHeader {
    quint32 bytes = 0;  ///< of the strip in the file
    quint32 packed = 0; ///< 1: a zstd frame
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

/// The strip's planes; the row above its first one counts as zero, so that strips stand alone.
void splitStrip(const ConstPixelView &pixels, int top, int rows, int planes, quint8 *out) {
    const std::vector<quint8> zeros(static_cast<size_t>(pixels.width) * 4);
    for (int plane = 0; plane < planes; ++plane) {
        const quint8 *above = zeros.data() + plane;
        for (int y = top; y < top + rows; ++y) {
            const quint8 *const row = pixels.row(y) + plane;
            for (int x = 0; x < pixels.width; ++x) {
                out[x] = static_cast<quint8>(row[4 * x] - above[4 * x]);
            }
            above = row;
            out += pixels.width;
        }
    }
}

void joinStrip(const PixelView &pixels, int top, int rows, int planes, const quint8 *in) {
    const std::vector<quint8> zeros(static_cast<size_t>(pixels.width) * 4);
    for (int plane = 0; plane < planes; ++plane) {
        const quint8 *above = zeros.data() + plane;
        for (int y = top; y < top + rows; ++y) {
            quint8 *const row = pixels.row(y) + plane;
            for (int x = 0; x < pixels.width; ++x) {
                row[4 * x] = static_cast<quint8>(in[x] + above[4 * x]);
            }
            above = row;
            in += pixels.width;
        }
    }
    if (planes == 3) {
        for (int y = top; y < top + rows; ++y) {
            quint8 *const alpha = pixels.row(y) + 3;
            for (int x = 0; x < pixels.width; ++x) {
                alpha[4 * x] = 255;
            }
        }
    }
}

} // namespace

qint64 writePacked(int file, const QImage &picture, bool pack, qint64 limit, const std::stop_token &stop) {
    const ConstPixelView pixels = readView(picture);
    const int planes = planesOf(picture);
    const int stripRows = rowsPerStrip(pixels.width);
    std::vector<quint8> strip(static_cast<size_t>(planes) * pixels.width * stripRows);
    std::vector<quint8> packed(pack ? ZSTD_compressBound(strip.size()) : 0);
    const std::unique_ptr<ZSTD_CCtx, size_t (*)(ZSTD_CCtx *)> context(ZSTD_createCCtx(), ZSTD_freeCCtx);
    qint64 total = 0;
    for (int top = 0; top < pixels.height; top += stripRows) {
        const int rows = std::min(stripRows, pixels.height - top);
        const size_t size = static_cast<size_t>(planes) * pixels.width * rows;
        splitStrip(pixels, top, rows, planes, strip.data());
        StripHeader header{static_cast<quint32>(size), 0};
        if (pack && context != nullptr) {
            const size_t squeezed =
                ZSTD_compressCCtx(context.get(), packed.data(), packed.size(), strip.data(), size, 1);
            if (ZSTD_isError(squeezed) == 0) {
                header = {static_cast<quint32>(squeezed), 1};
            }
        }
        total += static_cast<qint64>(sizeof header) + header.bytes;
        const quint8 *const data = header.packed == 1 ? packed.data() : strip.data();
        if (stop.stop_requested() || total > limit || !writeAll(file, &header, sizeof header) ||
            !writeAll(file, data, header.bytes)) {
            return -1;
        }
    }
    return total;
}

bool readPacked(int file, QImage &picture) {
    const PixelView pixels = writeView(picture);
    const int planes = planesOf(picture);
    const int stripRows = rowsPerStrip(pixels.width);
    std::vector<quint8> strip(static_cast<size_t>(planes) * pixels.width * stripRows);
    std::vector<quint8> packed(ZSTD_compressBound(strip.size()));
    for (int top = 0; top < pixels.height; top += stripRows) {
        const int rows = std::min(stripRows, pixels.height - top);
        const size_t size = static_cast<size_t>(planes) * pixels.width * rows;
        StripHeader header;
        if (!readAll(file, &header, sizeof header) || header.bytes > packed.size()) {
            return false;
        }
        std::vector<quint8> &target = header.packed == 1 ? packed : strip;
        if ((header.packed == 0 && header.bytes != size) || !readAll(file, target.data(), header.bytes)) {
            return false;
        }
        if (header.packed == 1 &&
            ZSTD_decompress(strip.data(), strip.size(), packed.data(), header.bytes) != size) {
            return false;
        }
        joinStrip(pixels, top, rows, planes, strip.data());
    }
    return true;
}

} // namespace lumora
