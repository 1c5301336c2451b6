// Reading TGA: true colour, grey and palettes, also with run lengths. By hand, as Qt's decoder reads true colour
// without run lengths only.
#include "imaging/Picture.h"
#include "imaging/files/Format.h"
#include "imaging/kernels/AlphaBytes.h"

#include <QtEndian>
#include <array>
#include <cstring>
#include <optional>
#include <vector>

namespace lumora {

namespace {

constexpr int tgaHeaderBytes = 18;

/// Truevision TGA File Format 2.0, fields 1 to 5.
struct TgaHeader {
    enum Kind { Palette = 1, Colour = 2, Grey = 3 };
    int kind = 0;
    bool runLengths = false;
    int paletteFirst = 0;
    int paletteLength = 0;
    int paletteBits = 0;
    int width = 0;
    int height = 0;
    int bits = 0;
    bool hasAlpha = false;
    int orientation = 1;
    qint64 paletteAt = 0;

    int pixelBytes() const { return (bits + 7) / 8; }
    int paletteEntryBytes() const { return (paletteBits + 7) / 8; }
    qint64 pixelsAt() const { return paletteAt + qint64{paletteLength} * paletteEntryBytes(); }
};

bool isColourDepth(int bits) {
    return bits == 15 || bits == 16 || bits == 24 || bits == 32;
}

/// The fields, when they can be a TGA's: no bytes mark the format.
std::optional<TgaHeader> fieldsOf(const QByteArray &head) {
    if (head.size() < tgaHeaderBytes) {
        return std::nullopt;
    }
    const auto byte = [&](int at) { return static_cast<int>(static_cast<uchar>(head[at])); };
    const auto word = [&](int at) { return static_cast<int>(qFromLittleEndian<quint16>(head.constData() + at)); };
    const int descriptor = byte(17);
    TgaHeader fields;
    fields.kind = byte(2) & 7;
    fields.runLengths = (byte(2) & 8) != 0;
    fields.paletteFirst = word(3);
    fields.paletteLength = byte(1) == 1 ? word(5) : 0;
    fields.paletteBits = byte(7);
    fields.width = word(12);
    fields.height = word(14);
    fields.bits = byte(16);
    fields.hasAlpha = (descriptor & 15) == 8;
    constexpr std::array orientations = {4, 3, 1, 2}; // EXIF's, by the corner of the first pixel
    fields.orientation = orientations[descriptor >> 4 & 3];
    fields.paletteAt = tgaHeaderBytes + byte(0);
    bool depthFits = false;
    switch (fields.kind) {
    case TgaHeader::Palette:
        depthFits = fields.bits == 8 && fields.paletteLength > 0 && isColourDepth(fields.paletteBits);
        break;
    case TgaHeader::Colour:
        depthFits = isColourDepth(fields.bits);
        break;
    case TgaHeader::Grey:
        depthFits = fields.bits == 8 || fields.bits == 16;
        break;
    default:
        break;
    }
    const bool noInterleaving = (descriptor & 0xC0) == 0;
    const bool plausible =
        depthFits && noInterleaving && byte(1) <= 1 && (byte(2) & 0xF0) == 0 && fields.width > 0 && fields.height > 0;
    return plausible ? std::optional(fields) : std::nullopt;
}

using Pixel = std::array<std::uint8_t, 4>; // blue, green, red, alpha

Pixel colourOf(const uchar *raw, int bits, bool hasAlpha) {
    if (bits > 16) {
        return {raw[0], raw[1], raw[2], hasAlpha && bits == 32 ? raw[3] : std::uint8_t{255}};
    }
    const int packed = qFromLittleEndian<quint16>(raw);
    const auto five = [&](int shift) { return static_cast<std::uint8_t>(((packed >> shift & 31) * 255 + 15) / 31); };
    return {five(0), five(5), five(10), 255};
}

/// The file's pixels one after the other, whether they are packed or not.
class TgaPixels {
  public:
    TgaPixels(const TgaHeader &header, Source &source) : m_header(header), m_source(source), m_at(header.pixelsAt()) {
        const int entryBytes = header.paletteEntryBytes();
        const QByteArray raw = source.bytes(header.paletteAt, header.pixelsAt() - header.paletteAt);
        for (qsizetype at = 0; entryBytes > 0 && at + entryBytes <= raw.size(); at += entryBytes) {
            m_palette.push_back(colourOf(reinterpret_cast<const uchar *>(raw.constData()) + at, header.paletteBits,
                                         header.paletteBits == 32));
        }
    }

    /// False at the end of the file.
    bool next(Pixel &pixel) {
        if (m_header.runLengths && m_left == 0) {
            uchar packet = 0;
            if (!take(&packet, 1)) {
                return false;
            }
            m_left = (packet & 127) + 1;
            m_repeats = (packet & 128) != 0;
            m_isRead = false;
        }
        if (!(m_repeats && m_isRead)) {
            std::array<uchar, 4> raw{};
            if (!take(raw.data(), m_header.pixelBytes())) {
                return false;
            }
            m_pixel = pixelOf(raw.data());
            m_isRead = true;
        }
        --m_left;
        pixel = m_pixel;
        return true;
    }

  private:
    Pixel pixelOf(const uchar *raw) const {
        switch (m_header.kind) {
        case TgaHeader::Palette: {
            const int index = raw[0] - m_header.paletteFirst;
            const bool known = index >= 0 && index < static_cast<int>(m_palette.size());
            return known ? m_palette[static_cast<std::size_t>(index)] : Pixel{0, 0, 0, 255};
        }
        case TgaHeader::Grey:
            return {raw[0], raw[0], raw[0], m_header.bits == 16 ? raw[1] : std::uint8_t{255}};
        default:
            return colourOf(raw, m_header.bits, m_header.hasAlpha);
        }
    }
    bool take(uchar *to, int count) {
        constexpr qint64 portion = 1 << 18;
        if (m_buffer.size() - m_taken < count) {
            const QByteArray rest = m_buffer.mid(m_taken);
            m_buffer = rest + m_source.bytes(m_at, portion);
            m_at += m_buffer.size() - rest.size();
            m_taken = 0;
        }
        if (m_buffer.size() - m_taken < count) {
            return false;
        }
        std::memcpy(to, m_buffer.constData() + m_taken, static_cast<std::size_t>(count));
        m_taken += count;
        return true;
    }

    const TgaHeader &m_header;
    Source &m_source;
    std::vector<Pixel> m_palette;
    qint64 m_at;
    QByteArray m_buffer;
    qsizetype m_taken = 0;
    Pixel m_pixel{};
    int m_left = 0;
    bool m_repeats = false;
    bool m_isRead = false;
};

/// Returns how many whole rows there were; `someAlpha`: whether any of their pixels can be seen.
int readRows(TgaPixels &pixels, const PixelView &view, bool &someAlpha) {
    Pixel pixel{};
    for (int y = 0; y < view.height; ++y) {
        std::uint8_t *to = view.row(y);
        for (int x = 0; x < view.width; ++x, to += 4) {
            if (!pixels.next(pixel)) {
                return y;
            }
            std::copy(pixel.begin(), pixel.end(), to);
            someAlpha = someAlpha || pixel[3] != 0;
        }
    }
    return view.height;
}

} // namespace

bool isTga(const QByteArray &head) {
    return fieldsOf(head).has_value();
}

FileHeader readTgaHeader(Source &source) {
    const std::optional<TgaHeader> fields = fieldsOf(source.bytes(0, tgaHeaderBytes));
    if (!fields) {
        return refusedHeader(PictureError::Damaged, QStringLiteral("unsupported TGA variant"));
    }
    FileHeader header;
    header.width = fields->width;
    header.height = fields->height;
    header.orientation = fields->orientation;
    header.packing = fields->runLengths ? Packing::RunLength : Packing::Stored;
    header.unpackedBytes = static_cast<double>(fields->width) * fields->height * fields->pixelBytes();
    header.packedBytes = static_cast<double>(source.size() - fields->pixelsAt());
    return header;
}

Decoded decodeTga(Source &source, const FileHeader &header) {
    const TgaHeader fields = *fieldsOf(source.bytes(0, tgaHeaderBytes));
    Decoded result;
    result.picture = newPicture(header.width, header.height, false);
    if (result.picture.isNull()) {
        return refused(PictureError::NoMemory, QStringLiteral("no memory for the pixels"));
    }
    TgaPixels pixels(fields, source);
    bool someAlpha = false;
    const int rows = readRows(pixels, writeView(result.picture), someAlpha);
    if (rows == 0) {
        return refused(PictureError::Damaged, QStringLiteral("not one whole row"));
    }
    if (!someAlpha) { // some programs leave it at 0 and mean an opaque picture
        makeOpaque(writeView(result.picture));
    }
    if (rows < header.height) {
        greyFrom(result.picture, rows);
        result.reason = QStringLiteral("cut off after %1 rows").arg(rows);
    }
    return result;
}

} // namespace lumora
