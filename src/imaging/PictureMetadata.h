// What a picture file says about the photo besides its pixels: when and with what it was taken, its title, its words.
// Read with the picture, kept beside it, written with it.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QMap>
#include <QString>

namespace lumora {

struct PictureMetadata {
    QByteArray exif;                 ///< EXIF 2.32, from its TIFF header on, at most 64 KB; without thumbnail
    QByteArray xmp;                  ///< an XMP packet (ISO 16684-1)
    QByteArray iptc;                 ///< records of IPTC-IIM 4
    QMap<QByteArray, QString> texts; ///< what EXIF has no place for, by the keywords of PNG ("Title", "Comment")
    double dotsPerInchX = 0;         ///< resolution of the file's own header or of a scanner; 0 where unknown
    double dotsPerInchY = 0;
    QDateTime made; ///< when it was pasted or scanned; written unless the EXIF data have a date

    bool operator==(const PictureMetadata &) const = default;
};

/// Whether a saved file tells the place where the photo was taken and the serial numbers of the camera and lens.
enum class PrivateDetails { Removed, Kept };

} // namespace lumora
