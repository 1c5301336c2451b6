// What a picture format provides to PictureFile: a few functions, which are one row in its table. Each format has a
// file of its own in this folder; the steps that all share (size check, colours, turning) are done by PictureFile.
#pragma once

#include "imaging/PictureFile.h"
#include "imaging/PixelView.h"
#include "imaging/files/Colour.h"
#include "imaging/files/Plausible.h"
#include "imaging/files/Source.h"

#include <QImage>

namespace lumora {

/// What the header of a file says. Sizes are in pixels as stored, before any turning.
struct FileHeader {
    int width = 0;
    int height = 0;
    int orientation = 1; ///< 1 to 8 as EXIF counts them; 1 where the decoder turns by itself
    Packing packing = Packing::Stored;
    double unpackedBytes = 0; ///< size of the data after decompression, see Plausible.h
    double packedBytes = 0;   ///< what the file has for them
    PictureError error = PictureError::None;
    QString reason;
};

/// A decoded picture as stored: not yet turned, colours not yet converted.
struct Decoded {
    QImage picture; ///< four bytes a pixel, arranged as `channels` says
    Channels channels = Channels::Bgra;
    QByteArray profile; ///< the embedded colour profile, empty when there is none
    PictureError error = PictureError::None;
    QString reason;
};

struct Format {
    const char *name;
    const char *extensions;                  ///< lower case, the usual one first, each between blanks
    bool (*matches)(const QByteArray &head); ///< judges by the first 4096 bytes
    FileHeader (*readHeader)(Source &source);
    /// Decodes the whole picture. The header has been read and found plausible.
    Decoded (*decode)(Source &source, const FileHeader &header);
    /// A smaller picture, cheaply, whose longer side is `longerSide` or somewhat more; a null function where the
    /// format has no shorter way than decoding the whole.
    Decoded (*decodeSmall)(Source &source, const FileHeader &header, int longerSide);
    /// No bytes mark the format: besides `matches`, the file's name has to have one of the extensions.
    bool byExtension = false;
};

struct MetadataBlocks;

struct FormatWriter {
    const char *extensions; ///< lower case, each between blanks
    int longestSide;        ///< pixels that the format or its library can have on a side
    bool keepsTransparency = true;
    /// Writes the picture; an empty text, or what went wrong. Null where `writeWithMetadata` is there.
    QString (*write)(const QImage &picture, QIODevice &target) = nullptr;
    /// The same for a format that can hold metadata.
    QString (*writeWithMetadata)(const QImage &picture, QIODevice &target, const MetadataBlocks &blocks) = nullptr;
};

bool isJpeg(const QByteArray &head);
FileHeader readJpegHeader(Source &source);
Decoded decodeJpeg(Source &source, const FileHeader &header);
Decoded decodeSmallJpeg(Source &source, const FileHeader &header, int longerSide);
QString writeJpeg(const QImage &picture, QIODevice &target, const MetadataBlocks &blocks);
QString writeJpeg(const QImage &picture, QIODevice &target, int quality);

bool isPng(const QByteArray &head);
FileHeader readPngHeader(Source &source);
Decoded decodePng(Source &source, const FileHeader &header);
QString writePng(const QImage &picture, QIODevice &target);
QString writePng(const QImage &picture, QIODevice &target, const MetadataBlocks &blocks);

bool isTiff(const QByteArray &head);
FileHeader readTiffHeader(Source &source);
Decoded decodeTiff(Source &source, const FileHeader &header);
QString writeTiff(const QImage &picture, QIODevice &target, const MetadataBlocks &blocks);

bool isGif(const QByteArray &head);
FileHeader readGifHeader(Source &source);
Decoded decodeGif(Source &source, const FileHeader &header);
QString writeGif(const QImage &picture, QIODevice &target);

bool isBmp(const QByteArray &head);
FileHeader readBmpHeader(Source &source);
Decoded decodeBmp(Source &source, const FileHeader &header);
QString writeBmp(const QImage &picture, QIODevice &target);

bool isWebP(const QByteArray &head);
FileHeader readWebPHeader(Source &source);
Decoded decodeWebP(Source &source, const FileHeader &header);
Decoded decodeSmallWebP(Source &source, const FileHeader &header, int longerSide);

bool isHeif(const QByteArray &head);
FileHeader readHeifHeader(Source &source);
Decoded decodeHeif(Source &source, const FileHeader &header);
Decoded decodeSmallHeif(Source &source, const FileHeader &header, int longerSide);

bool isTga(const QByteArray &head);
FileHeader readTgaHeader(Source &source);
Decoded decodeTga(Source &source, const FileHeader &header);
QString writeTga(const QImage &picture, QIODevice &target);

/// A header or a result that refuses.
FileHeader refusedHeader(PictureError error, const QString &reason);
Decoded refused(PictureError error, const QString &reason);

/// Whether an embedded thumbnail of that size can show the picture: its sides are in the same proportion, but for two
/// parts in a hundred. Cameras letterbox some, and programs leave that of another cut in the file.
bool hasShapeOf(const FileHeader &picture, int width, int height);

/// Paints with an opaque mid-grey, the colour of what a cut-off file no longer holds.
void paintGrey(const PixelView &view);

/// The same for the rows from `firstMissing` on.
void greyFrom(QImage &picture, int firstMissing);

/// Whether every alpha byte is 0.
bool hasOnlyZeroAlpha(const PixelView &view);

} // namespace lumora
