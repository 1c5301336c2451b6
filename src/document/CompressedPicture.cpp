#include "document/CompressedPicture.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
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

int stripsOf(const QImage &picture) {
    const int rows = rowsPerStrip(picture.width());
    return (picture.height() + rows - 1) / rows;
}

/// Strips come in any order.
struct StripHeader {
    quint32 strip = 0;      ///< from the top
    quint32 bytes = 0;      ///< of it in the file
    quint32 compressed = 0; ///< 1: a zstd frame with its checksum
};

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

/// Packs strips; each thread has one.
class StripPacker {
  public:
    StripPacker(const QImage &picture, bool compress)
        : m_picture(picture), m_planes(planesOf(picture)), m_rows(rowsPerStrip(picture.width())),
          m_strip(static_cast<size_t>(m_planes) * picture.width() * m_rows) {
        if (compress) {
            m_packed.resize(ZSTD_compressBound(m_strip.size()));
            m_context.reset(ZSTD_createCCtx());
            if (m_context == nullptr) {
                throw std::bad_alloc();
            }
            ZSTD_CCtx_setParameter(m_context.get(), ZSTD_c_compressionLevel, 1);
            ZSTD_CCtx_setParameter(m_context.get(), ZSTD_c_checksumFlag, 1);
        }
    }

    /// The strip's bytes stay until the next call; null when it cannot be packed.
    const quint8 *pack(int strip, StripHeader &header) {
        const int top = strip * m_rows;
        const int rows = std::min(m_rows, m_picture.height() - top);
        const size_t size = static_cast<size_t>(m_planes) * m_picture.width() * rows;
        splitStrip(m_picture, top, rows, m_planes, m_strip.data());
        header = {static_cast<quint32>(strip), static_cast<quint32>(size), 0};
        if (m_context == nullptr) {
            return m_strip.data();
        }
        const size_t packed = ZSTD_compress2(m_context.get(), m_packed.data(), m_packed.size(), m_strip.data(), size);
        header.bytes = static_cast<quint32>(packed);
        header.compressed = 1;
        return ZSTD_isError(packed) == 0 ? m_packed.data() : nullptr;
    }

  private:
    const QImage &m_picture;
    const int m_planes;
    const int m_rows;
    std::vector<quint8> m_strip;
    std::vector<quint8> m_packed;
    std::unique_ptr<ZSTD_CCtx, size_t (*)(ZSTD_CCtx *)> m_context{nullptr, ZSTD_freeCCtx};
};

/// Packs strips on several threads and writes each as soon as it is packed.
class StripWriter {
  public:
    StripWriter(int file, const QImage &picture, bool compress, qint64 limit, const std::stop_token &stop)
        : m_file(file), m_picture(picture), m_compress(compress), m_limit(limit), m_stop(stop) {}

    /// For each thread.
    void work() {
        bool good = true;
        try {
            StripPacker packer(m_picture, m_compress);
            const int strips = stripsOf(m_picture);
            for (int strip = m_next++; good && strip < strips; strip = m_next++) {
                StripHeader header;
                const quint8 *const data = packer.pack(strip, header);
                good = data != nullptr && write(header, data);
            }
        } catch (const std::bad_alloc &) {
            good = false;
        }
        if (!good) {
            m_failed = true;
        }
    }
    qint64 result() const { return m_failed ? -1 : m_total; }

  private:
    bool write(const StripHeader &header, const quint8 *data) {
        const std::lock_guard lock(m_mutex);
        m_total += static_cast<qint64>(sizeof header) + header.bytes;
        return !m_failed && !m_stop.stop_requested() && m_total <= m_limit &&
               writeAll(m_file, &header, sizeof header) && writeAll(m_file, data, header.bytes);
    }

    const int m_file;
    const QImage &m_picture;
    const bool m_compress;
    const qint64 m_limit;
    const std::stop_token &m_stop;
    std::atomic<int> m_next = 0;
    std::atomic<bool> m_failed = false;
    std::mutex m_mutex;
    qint64 m_total = 0;
};

} // namespace

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
            errno = got == 0 ? 0 : errno; // the end of the file is no error of the system
            return false;
        }
        bytes += got;
        size -= static_cast<size_t>(got);
    }
    return true;
}

qint64 writeCompressed(int file, const QImage &picture, bool compress, qint64 limit, const std::stop_token &stop,
                       int threads) {
    StripWriter writer(file, picture, compress, limit, stop);
    {
        std::vector<std::jthread> helpers;
        for (int n = 1; n < std::min(threads, stripsOf(picture)); ++n) {
            try {
                helpers.emplace_back([&writer] { writer.work(); });
            } catch (const std::system_error &) {
                break; // the system refuses one now
            }
        }
        writer.work();
    }
    return writer.result();
}

bool readCompressed(int file, QImage &picture) {
    const int planes = planesOf(picture);
    const int stripRows = rowsPerStrip(picture.width());
    std::vector<quint8> strip(static_cast<size_t>(planes) * picture.width() * stripRows);
    std::vector<quint8> compressed(ZSTD_compressBound(strip.size()));
    std::vector<bool> isRead(static_cast<size_t>(stripsOf(picture)));
    for (size_t n = 0; n < isRead.size(); ++n) {
        StripHeader header;
        if (!readAll(file, &header, sizeof header)) {
            return false;
        }
        errno = 0; // what follows is about the content
        if (header.bytes > compressed.size() || header.strip >= isRead.size() || isRead[header.strip]) {
            return false;
        }
        isRead[header.strip] = true;
        const int top = static_cast<int>(header.strip) * stripRows;
        const int rows = std::min(stripRows, picture.height() - top);
        const size_t size = static_cast<size_t>(planes) * picture.width() * rows;
        std::vector<quint8> &target = header.compressed == 1 ? compressed : strip;
        if ((header.compressed == 0 && header.bytes != size) || !readAll(file, target.data(), header.bytes)) {
            return false;
        }
        errno = 0;
        if (header.compressed == 1 &&
            ZSTD_decompress(strip.data(), strip.size(), compressed.data(), header.bytes) != size) {
            return false;
        }
        joinStrip(picture, top, rows, planes, strip.data());
    }
    return true;
}

} // namespace lumora
