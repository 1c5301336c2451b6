// The fuzz targets: each reads bytes as the program does when they come from a file, and ends the process when the
// answer is none. What a reader does not promise is not asked of it.
#pragma once

#include <QByteArray>
#include <QString>

namespace lumora::fuzz {

/// Bytes as a picture file; of TGA, which only its name tells, with `extension`. Opens it as a photo and as a
/// thumbnail, and prepares its metadata for a file that is saved.
void readAsPicture(const QByteArray &bytes, const char *extension);
/// The same for a PNG: the checksums of its chunks are made right, so that what is in them is read.
void readAsPng(const QByteArray &bytes, const char *extension);
/// The first byte tells which part of the metadata the others are: EXIF data, an XMP packet, Photoshop's resources with
/// IPTC records, or texts.
void readAsMetadata(const QByteArray &bytes, const char *);
/// A settings file; its own first line and the settings' names are then read and changed.
void readAsIni(const QByteArray &bytes, const char *);
/// A recovery copy, with its header's checksum made right.
void readAsRecoveryCopy(const QByteArray &bytes, const char *);
/// What the scanner's helper program writes, in pieces.
void readAsScan(const QByteArray &bytes, const char *);

struct Target {
    const char *name;
    void (*read)(const QByteArray &bytes, const char *extension);
    const char *extension = "";
};

inline constexpr Target targets[] = {
    {"jpeg", readAsPicture, ".jpg"},  {"png", readAsPng, ".png"},
    {"bmp", readAsPicture, ".bmp"},   {"tiff", readAsPicture, ".tif"},
    {"gif", readAsPicture, ".gif"},   {"tga", readAsPicture, ".tga"},
    {"webp", readAsPicture, ".webp"}, {"heif", readAsPicture, ".heic"},
    {"metadata", readAsMetadata},     {"ini", readAsIni},
    {"recovery", readAsRecoveryCopy}, {"scan", readAsScan},
};

/// Ends the process, for libFuzzer to keep the input, unless the promise holds.
void require(bool holds, const char *promise);

/// The path of a file with these bytes in the temporary folder; the next call replaces it.
QString fileWith(const QByteArray &bytes, const char *extension);

} // namespace lumora::fuzz
