#include "imaging/files/JpegMarkers.h"

#include <QMap>
#include <QtEndian>

namespace lumora {

namespace {

constexpr int startOfScan = 0xDA;
constexpr int endOfImage = 0xD9;

bool isFrame(int marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

bool standsAlone(int marker) {
    return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8);
}

// ITU-T T.81, B.2.2: precision, then height and width of two bytes each.
void readFrame(const QByteArray &segment, int marker, JpegMarkers &markers) {
    if (segment.size() >= 5 && markers.width == 0) {
        markers.height = qFromBigEndian<quint16>(segment.constData() + 1);
        markers.width = qFromBigEndian<quint16>(segment.constData() + 3);
        markers.arithmetic = marker > 0xC8;
        markers.progressive = marker == 0xC2 || marker == 0xCA;
        const bool isSequential = marker == 0xC0 || marker == 0xC1 || marker == 0xC9;
        markers.decodable = segment[0] == 8 && (isSequential || markers.progressive);
    }
}

// ICC.1, B.4: a name with its zero byte, the part's number from 1, the number of parts.
struct ProfileParts {
    QMap<int, QByteArray> parts;
    int count = 0;

    void add(const QByteArray &segment) {
        static const QByteArray lead("ICC_PROFILE\0", 12);
        if (segment.startsWith(lead) && segment.size() > 14) {
            parts.insert(static_cast<uchar>(segment[12]), segment.mid(14));
            count = static_cast<uchar>(segment[13]);
        }
    }
    QByteArray joined() const {
        QByteArray whole;
        for (int part = 1; part <= count; ++part) {
            if (!parts.contains(part)) {
                return {};
            }
            whole += parts[part];
        }
        return whole;
    }
};

// JFIF 1.02: five letters, two bytes of version, the unit (1 inch, 2 centimetre), the density in both directions.
void readJfif(const QByteArray &segment, JpegMarkers &markers) {
    if (segment.startsWith(QByteArray("JFIF\0", 5)) && segment.size() >= 12 && (segment[7] == 1 || segment[7] == 2)) {
        const double perInch = segment[7] == 1 ? 1 : 2.54;
        markers.dotsPerInchX = perInch * qFromBigEndian<quint16>(segment.constData() + 8);
        markers.dotsPerInchY = perInch * qFromBigEndian<quint16>(segment.constData() + 10);
    }
}

void readApplication1(const QByteArray &segment, JpegMarkers &markers) {
    static const QByteArray xmp("http://ns.adobe.com/xap/1.0/\0", 29);
    if (markers.exif.isEmpty() && segment.startsWith(QByteArray("Exif\0", 5))) {
        markers.exif = segment;
    } else if (markers.xmp.isEmpty() && segment.startsWith(xmp)) {
        markers.xmp = segment.mid(xmp.size());
    }
}

void readResources(const QByteArray &segment, JpegMarkers &markers) {
    static const QByteArray lead("Photoshop 3.0\0", 14);
    constexpr qsizetype most = 256 << 10;
    if (segment.startsWith(lead) && markers.resources.size() + segment.size() <= most) {
        markers.resources += segment.mid(lead.size());
    }
}

} // namespace

JpegMarkers readJpegMarkers(Source &source) {
    constexpr int mostSegments = 5000; // keeps a file that is nothing but segments from being walked for minutes
    JpegMarkers markers;
    ProfileParts profile;
    qint64 at = 2;
    for (int i = 0; i < mostSegments; ++i) {
        const QByteArray lead = source.bytes(at, 4);
        const int marker = lead.size() == 4 && static_cast<uchar>(lead[0]) == 0xFF ? static_cast<uchar>(lead[1]) : -1;
        if (lead.size() < 4 || marker == endOfImage) {
            break;
        }
        if (marker == -1 || marker == 0xFF || marker == 0) {
            ++at; // fill bytes, or rubbish between segments
            continue;
        }
        if (standsAlone(marker)) {
            at += 2;
            continue;
        }
        const int length = qFromBigEndian<quint16>(lead.constData() + 2);
        if (isFrame(marker)) {
            readFrame(source.bytes(at + 4, length - 2), marker, markers);
        } else if (marker == 0xE0) {
            readJfif(source.bytes(at + 4, length - 2), markers);
        } else if (marker == 0xE1) {
            readApplication1(source.bytes(at + 4, length - 2), markers);
        } else if (marker == 0xE2) {
            profile.add(source.bytes(at + 4, length - 2));
        } else if (marker == 0xED) {
            readResources(source.bytes(at + 4, length - 2), markers);
        } else if (marker == 0xFE && markers.comment.isEmpty()) {
            markers.comment = source.bytes(at + 4, length - 2);
        }
        at += 2 + std::max(2, length);
        if (marker == startOfScan) {
            markers.complete = markers.width > 0 && markers.height > 0;
            break;
        }
    }
    markers.dataStart = at;
    markers.profile = profile.joined();
    return markers;
}

int countJpegScans(Source &source, const JpegMarkers &markers, int most) {
    static const QByteArray start("\xFF\xDA"); // in coded data a byte of 255 is followed by 0 or a restart marker
    constexpr qint64 portion = 1 << 20;
    int scans = 1; // whose data begin here
    for (qint64 at = markers.dataStart; at < source.size() && scans <= most; at += portion) {
        const QByteArray bytes = source.bytes(at, portion + 1); // a marker may lie across the border
        for (qsizetype found = bytes.indexOf(start); found >= 0 && scans <= most;
             found = bytes.indexOf(start, found + 2)) {
            ++scans;
        }
    }
    return scans;
}

} // namespace lumora
