// The BMP reader against every kind of header that programs write or wrote. What each file shows is computed from the
// format's description; where Qt's reader knows the kind too, it has to agree with that.
#include "imaging/PictureFile.h"

#include "support/TestPictures.h"

#include <QtEndian>
#include <array>
#include <bit>
#include <cstdlib>
#include <gtest/gtest.h>
#include <vector>

using namespace lumora;
using test::firstDifference;

namespace {

using Masks = std::array<quint32, 4>; // red, green, blue, alpha

struct Kind {
    const char *name;
    std::vector<int> headers; // sizes in bytes
    std::vector<int> bits;
    bool qtReads = true; // Qt 6.4 shows the same, but for headers of 52 and 56 bytes
    int compression = 0;
    Masks masks{};
    bool fromTop = false;
    int colours = -1; // how many entries the palette has; -1: all
    int declared = 0; // how many the header says, 0 for "all"
    int gap = 0;      // bytes between the palette or the masks and the pixels
    bool zeroAlpha = false;
};

const std::vector<int> allInfo{40, 52, 56, 64, 108, 124};
const std::vector<int> withMasks{40, 52, 56, 108, 124};
const std::vector<int> withAlphaMask{56, 108, 124};
constexpr Masks rgb555{0x7C00, 0x3E0, 0x1F, 0};
constexpr Masks rgb565{0xF800, 0x7E0, 0x1F, 0};
constexpr Masks argb4444{0xF00, 0xF0, 0xF, 0xF000};
constexpr Masks rgba8888{0xFF000000, 0xFF0000, 0xFF00, 0xFF};
constexpr Masks argb8888{0xFF0000, 0xFF00, 0xFF, 0xFF000000};
constexpr Masks deep{0x3FF00000, 0xFFC00, 0x3FF, 0};
constexpr Masks uneven{0x1, 0xF0, 0x7FFF00, 0};

const Kind kinds[] = {
    {"OS/2 palette", {12}, {1, 4, 8}},
    {"OS/2 palette of 2 bits", {12}, {2}, false},
    {"OS/2 true colour", {12}, {24}},
    {"palette", allInfo, {1, 4, 8}},
    {"palette of 2 bits", allInfo, {2}, false},
    {"true colour", allInfo, {16, 24, 32}},
    {"from the top", {40, 108, 124}, {1, 4, 8, 16, 24, 32}, true, 0, {}, true},
    {"short palette", allInfo, {4, 8}, true, 0, {}, false, 5, 5},
    {"palette said to be too long", {40, 124}, {1, 4, 8}, false, 0, {}, false, -1, 1000},
    {"a gap before the pixels", {12, 40, 108, 124}, {1, 4, 8, 24}, true, 0, {}, false, -1, 0, 52},
    {"a gap before pixels with masks", {40, 108}, {16}, true, 3, rgb565, false, -1, 0, 60},
    {"a gap before 32 bits with masks", {40, 108}, {32}, true, 3, {0xFF0000, 0xFF00, 0xFF, 0}, false, -1, 0, 60},
    {"RLE8", {40, 64, 108, 124}, {8}, true, 1},
    {"RLE4", {40, 64, 108, 124}, {4}, true, 2},
    {"RLE8 with few colours", {40, 124}, {8}, true, 1, {}, false, 9, 9},
    {"5 bits a channel", withMasks, {16}, true, 3, rgb555},
    {"5, 6 and 5 bits", withMasks, {16}, true, 3, rgb565},
    {"4 bits with alpha", withAlphaMask, {16}, true, 3, argb4444},
    {"masks as usual", withMasks, {32}, true, 3, {0xFF0000, 0xFF00, 0xFF, 0}},
    {"alpha first", withAlphaMask, {32}, true, 3, argb8888},
    {"alpha last", withAlphaMask, {32}, true, 3, rgba8888},
    {"four masks behind a short header", {40}, {32}, false, 6, argb8888},
    {"10 bits a channel", withMasks, {32}, false, 3, deep},
    {"masks of 1, 4 and 15 bits", withMasks, {32}, false, 3, uneven},
    {"alpha mask, alpha nowhere", withAlphaMask, {32}, false, 3, argb8888, false, -1, 0, 0, true},
};

int toByte(quint32 value, quint32 most) {
    return most == 0 ? 0 : static_cast<int>((quint64{value} * 255 + most / 2) / most);
}

quint32 sample(int x, int y, int channel) {
    return static_cast<quint32>(x * 2654435761U + y * 40503U * 97 + channel * 7919U * 131071) ^ (x * y * 2246822519U);
}

struct Made {
    QByteArray file;
    QImage shows;
};

/// A BMP file of that kind, byte by byte, beside the picture that it shows.
class Maker {
  public:
    Maker(const Kind &kind, int headerBytes, int bits, QSize size)
        : m_kind(kind), m_headerBytes(headerBytes), m_bits(bits), m_size(size),
          m_colours(bits > 8           ? 0
                    : kind.colours < 0 ? 1 << bits
                                       : kind.colours),
          m_shows(size, QImage::Format_ARGB32) {}

    Made make() {
        const QByteArray pixels = m_kind.compression == 1 || m_kind.compression == 2 ? packed() : rows();
        QByteArray head = header();
        if (m_headerBytes == 40 && m_kind.compression >= 3) {
            for (int i = 0; i < (m_kind.compression == 6 ? 4 : 3); ++i) {
                append(head, m_kind.masks[i], 4);
            }
        }
        for (int i = 0; i < m_colours; ++i) {
            append(head, colour(i) & 0xFFFFFF, m_headerBytes == 12 ? 3 : 4);
        }
        head += QByteArray(m_kind.gap, '\xEE');
        QByteArray file("BM");
        append(file, static_cast<quint32>(14 + head.size() + pixels.size()), 4);
        append(file, 0, 4);
        append(file, static_cast<quint32>(14 + head.size()), 4);
        return {file + head + pixels, m_shows};
    }

  private:
    static void append(QByteArray &bytes, quint32 value, int count) {
        value = qToLittleEndian(value);
        bytes.append(reinterpret_cast<const char *>(&value), count);
    }
    static QRgb colour(int index) { return qRgb(index * 37 + 11, 255 - index * 3, index * 101); }

    QByteArray header() const {
        QByteArray head;
        append(head, static_cast<quint32>(m_headerBytes), 4);
        const int side = m_headerBytes == 12 ? 2 : 4;
        append(head, static_cast<quint32>(m_size.width()), side);
        append(head, static_cast<quint32>(m_kind.fromTop ? -m_size.height() : m_size.height()), side);
        append(head, 1, 2);
        append(head, static_cast<quint32>(m_bits), 2);
        if (m_headerBytes > 12) {
            append(head, static_cast<quint32>(m_kind.compression), 4);
            append(head, 0, 4);    // bytes of pixels: 0 is allowed
            append(head, 2835, 4); // pixels a metre
            append(head, 2835, 4);
            append(head, static_cast<quint32>(m_kind.declared), 4);
            append(head, 0, 4);
            for (const quint32 mask : m_headerBytes == 40 || m_headerBytes == 64 ? Masks{} : m_kind.masks) {
                append(head, mask, 4);
            }
            head.resize(std::min<qsizetype>(head.size(), m_headerBytes));
            head += QByteArray(m_headerBytes - head.size(), '\0');
            if (m_headerBytes >= 108) {
                head.replace(56, 4, "BGRs"); // sRGB
            }
        }
        return head;
    }

    quint32 pixel(int x, int y) {
        if (m_bits <= 8) {
            const quint32 index = sample(x, y, 0) % static_cast<quint32>(m_colours);
            m_shows.setPixel(x, y, colour(static_cast<int>(index)));
            return index;
        }
        const Masks plain = m_bits == 16 ? rgb555 : Masks{0xFF0000, 0xFF00, 0xFF, 0};
        quint32 value = 0;
        std::array<int, 4> bytes{0, 0, 0, 255};
        for (int i = 0; i < 4; ++i) {
            const quint32 mask = m_kind.compression == 0 ? plain[i] : m_kind.masks[i];
            if (mask != 0) {
                const int shift = std::countr_zero(mask);
                const quint32 part = i == 3 && m_kind.zeroAlpha ? 0 : sample(x, y, i) & (mask >> shift);
                value |= part << shift;
                bytes[i] = i == 3 && m_kind.zeroAlpha ? 255 : toByte(part, mask >> shift);
            }
        }
        m_shows.setPixel(x, y, qRgba(bytes[0], bytes[1], bytes[2], bytes[3]));
        return value;
    }

    QByteArray rows() {
        QByteArray bytes;
        for (int row = 0; row < m_size.height(); ++row) {
            const int y = m_kind.fromTop ? row : m_size.height() - 1 - row;
            QByteArray line(((qsizetype{m_size.width()} * m_bits + 31) / 32) * 4, '\0');
            for (int x = 0; x < m_size.width(); ++x) {
                const quint32 value = pixel(x, y);
                if (m_bits > 8) {
                    const quint32 stored = qToLittleEndian(value);
                    line.replace(qsizetype{x} * m_bits / 8, m_bits / 8, reinterpret_cast<const char *>(&stored),
                                 m_bits / 8);
                } else {
                    const int bit = x * m_bits;
                    line[bit / 8] = static_cast<char>(line[bit / 8] | value << (8 - m_bits - bit % 8));
                }
            }
            bytes += line;
        }
        return bytes;
    }

    /// Rows of run lengths: literals in even rows, runs in odd ones, an end after each row and at last.
    QByteArray packed() {
        QByteArray bytes;
        for (int row = 0; row < m_size.height(); ++row) {
            const int y = m_size.height() - 1 - row;
            for (int x = 0; x < m_size.width();) {
                const int count = std::min(m_size.width() - x, 9);
                row % 2 == 0 && count >= 3 ? appendLiteral(bytes, x, y, count) : appendRun(bytes, x, y, count);
                x += count;
            }
            bytes += QByteArray(2, '\0');
        }
        return bytes + QByteArray("\0\1", 2);
    }
    void appendLiteral(QByteArray &bytes, int x, int y, int count) {
        bytes += '\0';
        bytes += static_cast<char>(count);
        const qsizetype start = bytes.size();
        for (int i = 0; i < count; ++i) {
            const auto value = static_cast<char>(pixel(x + i, y));
            if (m_bits == 8) {
                bytes += value;
            } else if (i % 2 == 0) {
                bytes += static_cast<char>(value << 4);
            } else {
                bytes.back() = static_cast<char>(bytes.back() | value);
            }
        }
        bytes += QByteArray((bytes.size() - start) % 2, '\0');
    }
    void appendRun(QByteArray &bytes, int x, int y, int count) {
        const auto first = static_cast<int>(pixel(x, y));
        const int second = m_bits == 8 || count == 1 ? first : static_cast<int>(pixel(x + 1, y));
        for (int i = 0; i < count; ++i) {
            m_shows.setPixel(x + i, y, colour(i % 2 == 0 ? first : second));
        }
        bytes += static_cast<char>(count);
        bytes += static_cast<char>(m_bits == 8 ? first : first << 4 | second);
    }

    const Kind &m_kind;
    int m_headerBytes;
    int m_bits;
    QSize m_size;
    int m_colours;
    QImage m_shows;
};

/// Qt shifts 4 or 5 bits to the left where they should be stretched, hence the tolerance.
bool showsTheSame(const QImage &a, const QImage &b, int tolerance) {
    const auto near = [tolerance](int p, int q) { return std::abs(p - q) <= tolerance; };
    for (int y = 0; y < b.height(); ++y) {
        for (int x = 0; x < b.width() && a.size() == b.size(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            if (!near(qRed(p), qRed(q)) || !near(qGreen(p), qGreen(q)) || !near(qBlue(p), qBlue(q)) ||
                !near(qAlpha(p), qAlpha(q))) {
                return false;
            }
        }
    }
    return a.size() == b.size();
}

} // namespace

TEST(FilesBmp, EveryKindOfHeader) {
    int files = 0;
    int readByQt = 0;
    for (const Kind &kind : kinds) {
        for (const int headerBytes : kind.headers) {
            for (const int bits : kind.bits) {
                for (const QSize size : {QSize(1, 1), QSize(13, 6), QSize(32, 3), QSize(301, 2)}) {
                    SCOPED_TRACE(testing::Message() << kind.name << ", header of " << headerBytes << ", " << bits
                                                    << " bits, " << size.width() << " x " << size.height());
                    const Made made = Maker(kind, headerBytes, bits, size).make();
                    const PictureRead read = readPictureFromData(made.file);
                    EXPECT_EQ(read.error, PictureError::None) << read.reason.toStdString();
                    EXPECT_EQ(read.reason, QString());
                    EXPECT_EQ(firstDifference(read.picture, made.shows), QPoint(-1, -1));
                    const QImage other = QImage::fromData(made.file, "BMP");
                    const bool agrees = showsTheSame(other, made.shows, bits == 16 ? 15 : 0);
                    const bool known = kind.qtReads && headerBytes != 52 && headerBytes != 56;
                    EXPECT_TRUE(agrees || !known) << "the picture expected here may be wrong";
                    ++files;
                    readByQt += agrees ? 1 : 0;
                }
            }
        }
    }
    RecordProperty("files", files);
    RecordProperty("readByQt", readByQt);
}

TEST(FilesBmp, WhatMakesNoSenseIsRefused) {
    struct Change {
        const char *name;
        int at;
        QByteArray bytes;
    };
    const QByteArray most("\xFF\xFF\xFF\x7F");
    const QByteArray least("\x00\x00\x00\x80", 4);
    const QByteArray zero(4, '\0');
    const Change changes[] = {
        {"no width", 18, zero},
        {"a width below zero", 18, QByteArray(4, '\xFF')},
        {"no height", 22, zero},
        {"the widest", 18, most},
        {"the highest", 22, most},
        {"the highest from the top", 22, least},
        {"both", 18, most + most},
        {"0 bits", 28, QByteArray(2, '\0')},
        {"3 bits", 28, QByteArray("\3\0", 2)},
        {"65535 bits", 28, QByteArray(2, '\xFF')},
        {"RLE8 of 24 bits", 30, QByteArray("\1\0\0\0", 4)},
        {"packed as JPEG", 30, QByteArray("\4\0\0\0", 4)},
        {"packed as never seen", 30, QByteArray(4, '\xFF')},
        {"a header of 13 bytes", 14, QByteArray("\x0D\0\0\0", 4)},
        {"a header of 125 bytes", 14, QByteArray("\x7D\0\0\0", 4)},
        {"pixels behind the end", 10, most},
        {"pixels far behind the end", 10, QByteArray(4, '\xFF')},
    };
    const Kind plain{"true colour", {40}, {24}};
    const QByteArray file = Maker(plain, 40, 24, {13, 6}).make().file;
    ASSERT_EQ(readPictureFromData(file).error, PictureError::None);
    for (const Change &change : changes) {
        SCOPED_TRACE(change.name);
        QByteArray changed = file;
        changed.replace(change.at, change.bytes.size(), change.bytes);
        const PictureRead read = readPictureFromData(changed);
        EXPECT_NE(read.error, PictureError::None);
        EXPECT_FALSE(read.reason.isEmpty());
        EXPECT_TRUE(read.picture.isNull());
    }
}
