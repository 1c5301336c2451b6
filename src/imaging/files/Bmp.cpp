// Reading and writing BMP. Qt writes it; the reader is Lumora's own, as files of three decades come with every header
// that there was: of the 604 that the tests make, Qt 6.4 reads 396, and their 16-bit colours coarsely. It knows neither
// 2 bits a pixel, headers of 52 and 56 bytes nor masks of more than 8 bits.
#include "imaging/Picture.h"
#include "imaging/files/BmpHeader.h"
#include "imaging/files/Flatten.h"
#include "imaging/files/Format.h"
#include "imaging/kernels/AlphaBytes.h"

#include <QImageWriter>
#include <QtEndian>
#include <bit>
#include <cstring>

namespace lumora {

namespace {

// A channel of a 16- or 32-bit pixel, stretched to eight bits.
struct Channel {
    std::uint32_t mask = 0;
    int shift = 0;
    std::uint32_t most = 0;

    explicit Channel(std::uint32_t channelMask)
        : mask(channelMask), shift(channelMask ? std::countr_zero(channelMask) : 0), most(channelMask >> shift) {}
    std::uint8_t byte(std::uint32_t pixel) const {
        return most == 0 ? 0
                         : static_cast<std::uint8_t>(
                               (static_cast<std::uint64_t>((pixel & mask) >> shift) * 255 + most / 2) / most);
    }
};

void unpackMasked(const BmpHeader &header, const uchar *raw, std::uint8_t *to) {
    const Channel red(header.masks[0]);
    const Channel green(header.masks[1]);
    const Channel blue(header.masks[2]);
    const Channel alpha(header.masks[3]);
    for (int x = 0; x < header.width; ++x, to += 4) {
        const std::uint32_t pixel =
            header.bits == 16 ? qFromLittleEndian<quint16>(raw + x * 2) : qFromLittleEndian<quint32>(raw + x * 4);
        to[0] = blue.byte(pixel);
        to[1] = green.byte(pixel);
        to[2] = red.byte(pixel);
        to[3] = header.masks[3] != 0 ? alpha.byte(pixel) : 255;
    }
}

void unpackRow(const BmpHeader &header, const uchar *raw, std::uint8_t *to) {
    if (header.bits == 24) {
        for (int x = 0; x < header.width; ++x, raw += 3, to += 4) {
            std::copy_n(raw, 3, to);
            to[3] = 255;
        }
    } else if (header.bits > 8) {
        unpackMasked(header, raw, to);
    } else {
        auto *pixels = reinterpret_cast<std::uint32_t *>(to);
        const int most = (1 << header.bits) - 1;
        for (int x = 0; x < header.width; ++x) {
            const int bit = x * header.bits;
            pixels[x] = header.palette[raw[bit / 8] >> (8 - header.bits - bit % 8) & most];
        }
    }
}

// Returns how many rows, in the file's order, were read.
int readRows(const BmpHeader &header, Source &source, const PixelView &view) {
    std::vector<uchar> raw(static_cast<std::size_t>(header.rowBytes()));
    for (int row = 0; row < header.height; ++row) {
        if (source.read(header.pixelsAt + row * header.rowBytes(), raw.data(), header.rowBytes()) < header.rowBytes()) {
            return row;
        }
        unpackRow(header, raw.data(), view.row(header.fromTop ? row : header.height - 1 - row));
    }
    return header.height;
}

// Run lengths as Microsoft's "Bitmap Compression" describes them. What the file skips stays as it is.
class RunLengths {
  public:
    RunLengths(const BmpHeader &header, Source &source, const PixelView &view)
        : m_header(header), m_view(view), m_bytes(source.bytes(header.pixelsAt, source.size())) {}

    // Returns whether any pixel was read. What a file that is cut off no longer holds becomes grey.
    bool read() {
        while (m_at + 1 < m_bytes.size() && m_y < m_header.height) {
            const int count = next();
            const int value = next();
            if (count > 0) {
                run(count, value);
            } else if (value == 0) {
                m_x = 0;
                ++m_y;
            } else if (value == 1) {
                m_isWhole = true;
                break;
            } else if (value == 2) {
                m_x = std::min(m_x + next(), m_header.width);
                m_y += next();
            } else {
                literal(value);
            }
        }
        m_isWhole = m_isWhole || m_y >= m_header.height || (m_y == m_header.height - 1 && m_x == m_header.width);
        if (!m_isWhole) {
            greyRest();
        }
        return m_painted;
    }
    bool isWhole() const { return m_isWhole; }

  private:
    std::uint8_t *row(int y) const { return m_view.row(m_header.fromTop ? y : m_header.height - 1 - y); }
    void greyRest() const {
        paintGrey({row(m_y) + m_x * 4, m_header.width - m_x, 1, m_view.stride});
        for (int y = m_y + 1; y < m_header.height; ++y) {
            paintGrey({row(y), m_header.width, 1, m_view.stride});
        }
    }
    int next() { return m_at < m_bytes.size() ? static_cast<uchar>(m_bytes[m_at++]) : 0; }

    void run(int count, int value) {
        for (int i = 0; i < count && m_x < m_header.width; ++i) {
            paint(m_header.bits == 8 ? value : i % 2 == 0 ? value >> 4 : value & 15);
        }
    }
    void literal(int count) {
        const qint64 start = m_at;
        int value = 0;
        for (int i = 0; i < count; ++i) {
            if (m_header.bits == 8 || i % 2 == 0) {
                value = next();
            }
            paint(m_header.bits == 8 ? value : i % 2 == 0 ? value >> 4 : value & 15);
        }
        m_at += (m_at - start) % 2; // padded to whole words
    }
    void paint(int index) {
        if (m_x >= m_header.width || m_y >= m_header.height) {
            return;
        }
        reinterpret_cast<std::uint32_t *>(row(m_y))[m_x++] = m_header.palette[static_cast<std::size_t>(index)];
        m_painted = true;
    }

    const BmpHeader &m_header;
    PixelView m_view;
    QByteArray m_bytes;
    qint64 m_at = 0;
    int m_x = 0;
    int m_y = 0;
    bool m_painted = false;
    bool m_isWhole = false;
};

bool isPacked(const BmpHeader &header) {
    return header.compression == BmpHeader::RunLength4 || header.compression == BmpHeader::RunLength8;
}

} // namespace

bool isBmp(const QByteArray &head) {
    constexpr int fileHeaderBytes = 14;
    if (!head.startsWith("BM") || head.size() < fileHeaderBytes + 4) {
        return false;
    }
    const quint32 headerBytes = qFromLittleEndian<quint32>(head.constData() + fileHeaderBytes);
    return headerBytes >= 12 && headerBytes <= 124; // two letters alone are many a text's beginning
}

FileHeader readBmpHeader(Source &source) {
    const BmpHeader fields = readBmpFields(source);
    if (!fields.known) {
        return refusedHeader(PictureError::TooRare, QStringLiteral("unsupported BMP variant"));
    }
    FileHeader header;
    header.width = fields.width;
    header.height = fields.height;
    header.packing = isPacked(fields) ? Packing::RunLength : Packing::Stored;
    const double pixels = static_cast<double>(fields.width) * fields.height;
    header.unpackedBytes = isPacked(fields) ? pixels : static_cast<double>(fields.rowBytes()) * fields.height;
    header.packedBytes = static_cast<double>(source.size() - fields.pixelsAt);
    return header;
}

Decoded decodeBmp(Source &source, const FileHeader &header) {
    const BmpHeader fields = readBmpFields(source);
    Decoded result;
    result.picture = newPicture(header.width, header.height, fields.masks[3] == 0);
    if (result.picture.isNull()) {
        return refused(PictureError::NoMemory, QStringLiteral("no memory for the pixels"));
    }
    const PixelView view = writeView(result.picture);
    if (isPacked(fields)) {
        result.picture.fill(fields.palette.front());
        RunLengths runs(fields, source, view);
        if (!runs.read()) {
            return refused(PictureError::Damaged, QStringLiteral("no pixel could be decoded"));
        }
        if (!runs.isWhole()) {
            result.reason = QStringLiteral("cut off: the end of the data is missing");
        }
    } else {
        const int rows = readRows(fields, source, view);
        if (rows == 0) {
            return refused(PictureError::Damaged, QStringLiteral("not one whole row"));
        }
        if (rows < header.height) {
            PixelView missing = view;
            missing.height = header.height - rows;
            missing.data = fields.fromTop ? view.row(rows) : view.data;
            paintGrey(missing);
            result.reason = QStringLiteral("cut off after %1 rows").arg(rows);
        }
    }
    // Some writers set an alpha mask and leave alpha at 0 everywhere; they mean an opaque picture.
    if (fields.masks[3] != 0 && hasOnlyZeroAlpha(view)) {
        result.picture.reinterpretAsFormat(QImage::Format_RGB32);
        makeOpaque(writeView(result.picture));
    }
    result.profile = fields.profile;
    return result;
}

QString writeBmp(const QImage &picture, QIODevice &target) {
    QImage opaque = picture;
    if (picture.hasAlphaChannel()) {
        opaque = newPicture(picture.width(), picture.height(), true);
        if (opaque.isNull()) {
            return QStringLiteral("no memory for the pixels on white");
        }
        const ConstPixelView from = readView(picture);
        const PixelView to = writeView(opaque);
        for (int y = 0; y < from.height; ++y) {
            rowOntoWhite(from.row(y), from.width, to.row(y));
        }
    }
    const bool good = QImageWriter(&target, "bmp").write(opaque); // 24 bits, rows from the bottom
    return good ? QString() : QStringLiteral("cannot write: %1").arg(target.errorString());
}

} // namespace lumora
