#include "imaging/files/BmpHeader.h"

#include <QtEndian>
#include <climits>

namespace lumora {

namespace {

constexpr int fileHeaderBytes = 14;
constexpr int coreHeaderBytes = 12; // OS/2 1.x
constexpr int infoHeaderBytes = 40; // BITMAPINFOHEADER, which all later ones begin with
constexpr int alphaMaskEnd = 56;    // headers from this size on hold four masks
constexpr int v5HeaderBytes = 124;
constexpr std::uint32_t embeddedProfile = 0x4D424544; // 'MBED'
constexpr int alphaBitFields = 6;                     // BI_ALPHABITFIELDS, four masks behind the header

// The number of the given width at an offset; 0 beyond the end. (For an empty array constData() is a single byte, which
// GCC 14 takes for the bytes read here.)
template <typename Value> Value number(const QByteArray &bytes, qint64 at) {
    return at >= 0 && at + static_cast<qint64>(sizeof(Value)) <= bytes.size()
               ? qFromLittleEndian<Value>(bytes.cbegin() + at)
               : Value{};
}

bool depthFits(int bits, int compression) {
    switch (compression) {
    case BmpHeader::Plain:
        return bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
    case BmpHeader::RunLength8:
        return bits == 8;
    case BmpHeader::RunLength4:
        return bits == 4;
    case BmpHeader::BitFields:
        return bits == 16 || bits == 32;
    default:
        return false;
    }
}

void readMasks(BmpHeader &header, const QByteArray &bytes, int headerBytes, bool four) {
    if (header.compression != BmpHeader::BitFields) {
        header.masks = header.bits == 16 ? std::array<std::uint32_t, 4>{0x7C00, 0x3E0, 0x1F, 0}
                                         : std::array<std::uint32_t, 4>{0xFF0000, 0xFF00, 0xFF, 0};
        return;
    }
    // They follow the short header and are part of the long ones, in both cases at the same place.
    for (int i = 0; i < (four || headerBytes >= alphaMaskEnd ? 4 : 3); ++i) {
        header.masks[i] = number<quint32>(bytes, fileHeaderBytes + infoHeaderBytes + i * 4);
    }
}

void readPalette(BmpHeader &header, Source &source, qint64 at, quint32 used, int entryBytes) {
    const int most = 1 << header.bits;
    const int count = used == 0 || used > static_cast<quint32>(most) ? most : static_cast<int>(used);
    const QByteArray bytes =
        source.bytes(at, std::min<qint64>(static_cast<qint64>(count) * entryBytes, header.pixelsAt - at));
    header.palette.assign(static_cast<std::size_t>(most), 0xFF000000);
    for (int i = 0; i < bytes.size() / entryBytes; ++i) {
        const auto *entry = reinterpret_cast<const uchar *>(bytes.constData()) + i * entryBytes;
        header.palette[i] = 0xFF000000U | entry[2] << 16U | entry[1] << 8U | entry[0];
    }
}

} // namespace

BmpHeader readBmpFields(Source &source) {
    BmpHeader header;
    const QByteArray bytes = source.bytes(0, fileHeaderBytes + v5HeaderBytes);
    const auto headerBytes = static_cast<int>(std::min<quint32>(number<quint32>(bytes, fileHeaderBytes), INT_MAX));
    const bool core = headerBytes == coreHeaderBytes;
    if (!core && (headerBytes < infoHeaderBytes || headerBytes > v5HeaderBytes)) {
        return header;
    }
    header.pixelsAt = number<quint32>(bytes, 10);
    if (core) {
        header.width = number<quint16>(bytes, 18);
        header.height = number<quint16>(bytes, 20);
        header.bits = number<quint16>(bytes, 24);
    } else {
        header.width = number<qint32>(bytes, 18);
        const auto height = number<qint32>(bytes, 22);
        header.fromTop = height < 0;
        header.height = height == INT_MIN ? 0 : std::abs(height);
        header.bits = number<quint16>(bytes, 28);
        header.compression = static_cast<int>(std::min<quint32>(number<quint32>(bytes, 30), INT_MAX));
    }
    const bool four = header.compression == alphaBitFields;
    header.compression = four ? BmpHeader::BitFields : header.compression;
    readMasks(header, bytes, headerBytes, four);
    header.known = depthFits(header.bits, header.compression);
    if (header.known && header.bits <= 8) {
        const quint32 used = core ? 0 : number<quint32>(bytes, 46);
        readPalette(header, source, fileHeaderBytes + headerBytes, used, core ? 3 : 4);
    }
    if (headerBytes == v5HeaderBytes && number<quint32>(bytes, 70) == embeddedProfile) {
        constexpr quint32 mostProfileBytes = 16 << 20;
        header.profile = source.bytes(fileHeaderBytes + static_cast<qint64>(number<quint32>(bytes, 126)),
                                      std::min(number<quint32>(bytes, 130), mostProfileBytes));
    }
    return header;
}

} // namespace lumora
