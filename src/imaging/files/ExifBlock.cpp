#include "imaging/files/ExifBlock.h"

#include <QBuffer>
#include <QtEndian>
#include <algorithm>
#include <vector>

namespace lumora {

namespace {

constexpr int mostEntries = 200; // in a directory; the library reads up to 256
constexpr qint64 mostBlockBytes = 64 << 10;
constexpr qint64 mostPacketBytes = 256 << 10; // of XMP and IPTC

enum Tag : quint16 {
    XmpPacket = 700,
    IptcRecords = 33723,
    ExifDirectory = 34665,
    GpsDirectory = 34853,
    MakerNote = 37500,
    InteroperabilityDirectory = 40965,
};

struct Entry {
    quint16 tag = 0;
    quint16 type = 0;
    quint32 count = 0;
    quint32 offset = 0; ///< where the value is stored
    QByteArray value;
};

using Directory = std::vector<Entry>;

/// Tags of the picture's directory that say something about the photo. The others describe how its pixels are stored,
/// or are maps, layers and previews.
bool isAboutThePhoto(quint16 tag) {
    constexpr quint16 low[] = {11, 269, 270, 271, 272, 274, 282, 283, 285, 296, 305, 306, 315, 316, 18246, 18249};
    constexpr quint16 notAboutIt[] = {33421, 33422, 33550, IptcRecords, 33922, 34264, 34377,
                                      34675, 34735, 34736, 34737,       37724, 37500, InteroperabilityDirectory};
    constexpr quint16 ofRawFiles[] = {50708, 50735, 50736};
    const auto in = [tag](const auto &tags) {
        return std::find(std::begin(tags), std::end(tags), tag) != std::end(tags);
    };
    if (tag < 32768) {
        return in(low);
    }
    return tag < 50000 ? !in(notAboutIt) : in(ofRawFiles);
}

class Reader {
  public:
    explicit Reader(Source &source) : m_source(source) {
        const QByteArray head = source.bytes(0, 8);
        m_little = head.startsWith(QByteArray("II*\0", 4));
        m_valid = head.size() == 8 && (m_little || head.startsWith(QByteArray("MM\0*", 4)));
        m_first = m_valid ? number<quint32>(head.constData() + 4) : 0;
    }

    bool isValid() const { return m_valid; }
    bool isLittle() const { return m_little; }
    quint32 first() const { return m_first; }

    /// The entries of the directory that `isWanted` takes; each value is read while the budget lasts.
    template <typename Wanted> Directory directory(qint64 at, Wanted isWanted, qint64 budget) {
        Directory entries;
        const QByteArray lead = m_source.bytes(at, 2);
        const int count = lead.size() == 2 ? std::min<int>(number<quint16>(lead.constData()), mostEntries) : 0;
        const QByteArray raw = m_source.bytes(at + 2, qint64{12} * count);
        for (qsizetype i = 0; i + 12 <= raw.size(); i += 12) {
            Entry entry = entryAt(raw, i, at + 2);
            const qint64 bytes = sizeOf(entry);
            if (bytes == 0 || bytes > budget || !isWanted(entry.tag)) {
                continue;
            }
            entry.value = m_source.bytes(entry.offset, bytes);
            if (entry.value.size() == bytes) {
                budget -= bytes + 12;
                entries.push_back(entry);
            }
        }
        return entries;
    }

    /// Where the directory that the entry points to begins; 0 for none.
    qint64 pointer(const Directory &directory, quint16 tag) const {
        for (const Entry &entry : directory) {
            if (entry.tag == tag && entry.value.size() == 4) {
                return number<quint32>(entry.value.constData());
            }
        }
        return 0;
    }

  private:
    template <typename Number> Number number(const char *bytes) const {
        return m_little ? qFromLittleEndian<Number>(bytes) : qFromBigEndian<Number>(bytes);
    }

    Entry entryAt(const QByteArray &raw, qsizetype i, qint64 rawAt) const {
        Entry entry;
        entry.tag = number<quint16>(raw.constData() + i);
        entry.type = number<quint16>(raw.constData() + i + 2);
        entry.count = number<quint32>(raw.constData() + i + 4);
        // Four bytes and less are stored in place of the offset.
        entry.offset =
            sizeOf(entry) <= 4 ? static_cast<quint32>(rawAt + i + 8) : number<quint32>(raw.constData() + i + 8);
        return entry;
    }

    static qint64 sizeOf(const Entry &entry) {
        constexpr int sizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4}; // TIFF 6.0, section 2
        return entry.type < std::size(sizes) ? qint64{entry.count} * sizes[entry.type] : 0;
    }

    Source &m_source;
    bool m_valid = false;
    bool m_little = false;
    quint32 m_first = 0;
};

class Layout {
  public:
    explicit Layout(bool little) : m_little(little), m_bytes(little ? "II*\0" : "MM\0*", 4) { m_bytes.resize(8); }

    /// A maker's note may count offsets from the beginning of the whole, and so stays where it was.
    bool placeMakerNote(const Entry &note) {
        if (note.offset < 8 || note.offset + note.value.size() > mostBlockBytes) {
            return false;
        }
        m_bytes.resize(note.offset, '\0');
        m_bytes += note.value;
        return true;
    }

    quint32 append(const Directory &entries) {
        evenOut();
        const auto at = static_cast<quint32>(m_bytes.size());
        const qsizetype end = 2 + 12 * static_cast<qsizetype>(entries.size()) + 4;
        m_bytes.resize(at + end, '\0');
        put<quint16>(at, static_cast<quint16>(entries.size()));
        qsizetype to = at + 2;
        for (const Entry &entry : entries) {
            put<quint16>(to, entry.tag);
            put<quint16>(to + 2, entry.type);
            put<quint32>(to + 4, entry.count);
            if (entry.value.size() <= 4) {
                m_bytes.replace(to + 8, entry.value.size(), entry.value);
            } else if (entry.tag == MakerNote) {
                put<quint32>(to + 8, entry.offset);
            } else {
                evenOut();
                put<quint32>(to + 8, static_cast<quint32>(m_bytes.size()));
                m_bytes += entry.value;
            }
            to += 12;
        }
        return at;
    }

    Entry pointer(quint16 tag, quint32 at) const {
        constexpr quint16 longType = 4;
        Entry entry{tag, longType, 1, 0, QByteArray(4, '\0')};
        m_little ? qToLittleEndian(at, entry.value.data()) : qToBigEndian(at, entry.value.data());
        return entry;
    }

    QByteArray finished(quint32 firstDirectory) {
        put<quint32>(4, firstDirectory);
        return m_bytes;
    }

  private:
    template <typename Number> void put(qsizetype at, Number value) {
        m_little ? qToLittleEndian(value, m_bytes.data() + at) : qToBigEndian(value, m_bytes.data() + at);
    }
    void evenOut() {
        if (m_bytes.size() % 2 != 0) {
            m_bytes += '\0';
        }
    }

    bool m_little;
    QByteArray m_bytes;
};

QByteArray laidOut(const Reader &reader, const Directory &picture, Directory exif, const Directory &gps) {
    Layout layout(reader.isLittle());
    const auto note = std::find_if(exif.begin(), exif.end(), [](const Entry &entry) { return entry.tag == MakerNote; });
    const bool hasNote = note != exif.end();
    if (hasNote && (note->value.size() <= 4 || !layout.placeMakerNote(*note))) {
        exif.erase(note);
        return laidOut(reader, picture, exif, gps);
    }
    Directory whole = picture;
    if (!exif.empty()) {
        whole.push_back(layout.pointer(ExifDirectory, layout.append(exif)));
    }
    if (!gps.empty()) {
        whole.push_back(layout.pointer(GpsDirectory, layout.append(gps)));
    }
    QByteArray block = whole.empty() ? QByteArray() : layout.finished(layout.append(whole));
    if (hasNote && block.size() > mostBlockBytes) {
        exif.erase(note); // the other values come first
        return laidOut(reader, picture, exif, gps);
    }
    return block;
}

QByteArray onlyValue(const Directory &directory) {
    return directory.empty() ? QByteArray() : directory.front().value;
}

} // namespace

TiffMetadata readTiffMetadata(Source &source) {
    Reader reader(source);
    TiffMetadata result;
    if (!reader.isValid()) {
        return result;
    }
    constexpr qint64 share = mostBlockBytes / 4;
    const auto isPointer = [](quint16 tag) { return tag == ExifDirectory || tag == GpsDirectory; };
    const Directory pointers = reader.directory(reader.first(), isPointer, share);
    const Directory picture = reader.directory(
        reader.first(), [&](quint16 tag) { return isAboutThePhoto(tag) && !isPointer(tag); }, share);
    Directory exif;
    if (const qint64 at = reader.pointer(pointers, ExifDirectory); at > 0) {
        exif = reader.directory(
            at, [](quint16 tag) { return tag != MakerNote && tag != InteroperabilityDirectory; }, share);
        for (const Entry &note : reader.directory(
                 at, [](quint16 tag) { return tag == MakerNote; }, mostBlockBytes)) {
            exif.push_back(note);
        }
    }
    Directory gps;
    if (const qint64 at = reader.pointer(pointers, GpsDirectory); at > 0) {
        gps = reader.directory(
            at, [](quint16) { return true; }, share);
    }
    result.exif = laidOut(reader, picture, exif, gps);
    result.xmp = onlyValue(reader.directory(
        reader.first(), [](quint16 tag) { return tag == XmpPacket; }, mostPacketBytes));
    result.iptc = onlyValue(reader.directory(
        reader.first(), [](quint16 tag) { return tag == IptcRecords; }, mostPacketBytes));
    return result;
}

QByteArray exifBlock(const QByteArray &data) {
    QByteArray whole = data.startsWith(QByteArray("Exif\0\0", 6)) ? data.mid(6) : data;
    QBuffer buffer(&whole);
    buffer.open(QIODevice::ReadOnly);
    Source source(buffer);
    return readTiffMetadata(source).exif;
}

} // namespace lumora
