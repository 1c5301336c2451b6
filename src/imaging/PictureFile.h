// Reads and writes picture files: the format of a file is detected from its content, the format written is chosen by
// the target's extension.
#pragma once

#include "imaging/PictureMetadata.h"

#include <QImage>
#include <QSize>
#include <QString>
#include <QStringList>

namespace lumora {

enum class PictureError {
    None,
    NotFound,       ///< no such file, or it may not be read
    NotAPicture,    ///< none of the formats known here
    TooRare,        ///< a known format, arranged in a way that is not decoded here
    TooLarge,       ///< more than 200 megapixels, or a side of more than 65,535 pixels
    Damaged,        ///< the header claims more than the file can hold, or the data are damaged from the start
    NoMemory,       ///< memory for the pixels could not be allocated
    UnknownType,    ///< writing: unknown extension
    NotWritable,    ///< writing: folder missing, something there that is no file, another reason
    DiskFull,       ///< writing
    ReadOnlyFolder, ///< writing: nothing may be created there
    ReadOnlyFile,   ///< writing: the file that is there is protected
    NameRefused,    ///< writing: the file system does not take a sign of the name
    NameTooLong,    ///< writing
    SideTooLong,    ///< writing: more pixels on a side than the file type can have
    Cancelled,      ///< the user cancelled it
};

struct PictureRead {
    QImage picture; ///< upright, sRGB, a picture as Picture.h describes it; null unless error is None
    PictureError error = PictureError::None;
    QString reason; ///< for logs and lumora-probe: the decoder's message, in English
    PictureMetadata metadata = {};
    QString fileName = {}; ///< without its folder; only readPicture knows it
};

struct PictureHeader {
    QString format; ///< "JPEG", "PNG", "GIF", "BMP", "TIFF", "WebP", "HEIF", "TGA"
    int width = 0;  ///< pixels, upright
    int height = 0; ///< pixels, upright
    PictureError error = PictureError::None;
    QString reason;
};

struct PictureWritten {
    PictureError error = PictureError::None;
    QString reason;
    int mostPixels = 0; ///< with SideTooLong: of a side in this file type
    bool ok() const { return error == PictureError::None; }
};

/// The extensions that files of the formats that can be read have: lower case, without a dot, a list for each format,
/// the usual one first.
QList<QStringList> readableExtensions();

/// Whether that file's name has an extension that writePicture knows.
bool hasWritableExtension(const QString &path);
/// Whether a file of that name's type, when it is written, keeps what is transparent; if not, it is white there.
bool keepsTransparency(const QString &path);

/// Reads only the header. Never allocates pixels.
PictureHeader readPictureHeader(const QString &path);

/// Reads BMP, GIF (first frame), JPEG, PNG, TIFF (first page), WebP and HEIF by content, TGA by its extension and a
/// plausible header: upright by its EXIF or TIFF orientation, colours converted from an embedded profile to sRGB. The
/// size is checked against the limits and
/// against what the file can hold before a pixel is allocated. Reports progress to the current TaskControl, which may
/// cancel it.
PictureRead readPicture(const QString &path);

/// The same into ordinary pages of memory (see OrdinaryPages), for a program that begins with that picture.
PictureRead readFirstPicture(const QString &path);

/// A small picture of the file whose longer side is at most `longerSide` pixels (1 to 2000), upright and sRGB, made
/// from the embedded or a scaled-down decode where the format has one.
PictureRead readThumbnail(const QString &path, int longerSide);

/// The picture of the file at the size that just fits into `room` (pixels, at least 1 x 1), larger than the file's own
/// where that is smaller; upright and sRGB. Made from a scaled-down decode where the format has one, so that a large
/// photo takes little more memory than the result. Can be cancelled by the current TaskControl.
PictureRead readFitted(const QString &path, QSize room);

/// Reads a picture from the bytes of a file.
PictureRead readPictureFromData(const QByteArray &data);

/// Writes the picture as BMP, GIF, JPEG, PNG, TIFF or TGA, by the extension (.bmp .gif .jpg .jpeg .jpe .png .tif .tiff
/// .tga, any case). The file is replaced atomically: a temporary file beside it, flushed, renamed; links stay links, an
/// existing file keeps its mode. Transparent pixels are blended with white in JPEG and BMP. Reports progress to the
/// current TaskControl, which may cancel it until the file is replaced. JPEG, PNG and TIFF get the metadata, brought up
/// to date: upright, the sizes of the picture, no small copy of it; damaged ones are left out.
PictureWritten writePicture(const QImage &picture, const QString &path, const PictureMetadata &metadata = {},
                            PrivateDetails details = PrivateDetails::Removed);

/// The picture as the bytes of a JPEG file at quality 1 to 100, without any metadata.
QByteArray encodeJpeg(const QImage &picture, int quality = 90);

} // namespace lumora
