#include "imaging/PictureFile.h"

#include "base/FileName.h"
#include "base/ReplaceFile.h"
#include "base/TaskControl.h"
#include "imaging/Picture.h"
#include "imaging/Scale.h"
#include "imaging/files/Format.h"
#include "imaging/files/Metadata.h"
#include "imaging/files/MetadataBlocks.h"
#include "imaging/files/Orientation.h"
#include "imaging/kernels/AlphaBytes.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace lumora {

namespace {

constexpr Format formats[] = {
    {"JPEG", " jpg jpeg jpe ", isJpeg, readJpegHeader, decodeJpeg, decodeSmallJpeg},
    {"PNG", " png ", isPng, readPngHeader, decodePng, nullptr},
    {"GIF", " gif ", isGif, readGifHeader, decodeGif, nullptr},
    {"BMP", " bmp ", isBmp, readBmpHeader, decodeBmp, nullptr},
    {"TIFF", " tif tiff ", isTiff, readTiffHeader, decodeTiff, nullptr},
    {"WebP", " webp ", isWebP, readWebPHeader, decodeWebP, decodeSmallWebP},
    {"HEIF", " heic heif avif ", isHeif, readHeifHeader, decodeHeif, decodeSmallHeif},
    {"TGA", " tga ", isTga, readTgaHeader, decodeTga, nullptr, true},
};

constexpr int anySide = INT_MAX;
constexpr int sixteenBits = 65535;
constexpr int jpegSide = 65500; // libjpeg's own limit

constexpr FormatWriter writers[] = {
    {.extensions = " jpg jpeg jpe ",
     .longestSide = jpegSide,
     .keepsTransparency = false,
     .writeWithMetadata = writeJpeg},
    {.extensions = " png ", .longestSide = anySide, .writeWithMetadata = writePng},
    {.extensions = " tif tiff ", .longestSide = anySide, .writeWithMetadata = writeTiff},
    {.extensions = " bmp ", .longestSide = anySide, .keepsTransparency = false, .write = writeBmp},
    {.extensions = " gif ", .longestSide = sixteenBits, .write = writeGif},
    {.extensions = " tga ", .longestSide = sixteenBits, .write = writeTga},
};

bool hasExtension(const char *extensions, const QString &path) {
    return QLatin1String(extensions).contains(QLatin1Char(' ') + QFileInfo(path).suffix().toLower() + QLatin1Char(' '));
}

const Format *formatOf(Source &source) {
    constexpr int headBytes = 4096;
    const QByteArray head = source.bytes(0, headBytes);
    for (const Format &format : formats) {
        if (format.matches(head) && (!format.byExtension || hasExtension(format.extensions, source.name()))) {
            return &format;
        }
    }
    return nullptr;
}

/// The writer of the type that the file's name has; null where there is none.
const FormatWriter *writerOf(const QString &path) {
    const auto *writer = std::find_if(std::begin(writers), std::end(writers), [&](const FormatWriter &candidate) {
        return hasExtension(candidate.extensions, path);
    });
    return writer == std::end(writers) ? nullptr : writer;
}

// Rejects, before pixels are allocated, images that are too large or larger than the file can hold.
void checkSize(FileHeader &header) {
    if (header.error != PictureError::None) {
        return;
    }
    const QString size = QStringLiteral("%1 x %2 pixels").arg(header.width).arg(header.height);
    if (header.width <= 0 || header.height <= 0) {
        header = refusedHeader(PictureError::Damaged, size);
        return;
    }
    constexpr int longestSide = 65'535; // what the formats that are written can hold
    if (static_cast<qint64>(header.width) * header.height > maxPicturePixels ||
        std::max(header.width, header.height) > longestSide) {
        header = refusedHeader(PictureError::TooLarge, size);
        return;
    }
    if (header.packedBytes < std::max(1.0, leastPackedBytes(header.packing, header.unpackedBytes))) {
        const QString bytes = QString::number(header.packedBytes, 'f', 0);
        header = refusedHeader(PictureError::Damaged, QStringLiteral("%1 do not fit into %2 bytes").arg(size, bytes));
    }
}

struct Found {
    const Format *format = nullptr;
    FileHeader header;
};

Found find(Source &source) {
    Found found;
    found.format = formatOf(source);
    if (!found.format) {
        found.header = refusedHeader(PictureError::NotAPicture, QStringLiteral("no picture format known here"));
        return found;
    }
    found.header = found.format->readHeader(source);
    checkSize(found.header);
    return found;
}

// Fully opaque images are stored as Format_RGB32.
void markOpaque(QImage &picture) {
    if (picture.hasAlphaChannel() && allOpaque(readView(picture))) {
        picture.reinterpretAsFormat(QImage::Format_RGB32);
    }
}

PictureRead refusedRead(PictureError error, const QString &reason) {
    PictureRead read;
    read.error = error;
    read.reason = reason;
    return read;
}

PictureRead finished(Decoded &&decoded, int orientation) {
    if (decoded.error != PictureError::None) {
        return refusedRead(decoded.error, decoded.reason);
    }
    convertToSrgb(decoded.picture, decoded.channels, decoded.profile);
    markOpaque(decoded.picture);
    PictureRead read;
    read.picture = turnedUpright(decoded.picture, orientation);
    read.reason = decoded.reason;
    return read.picture.isNull() ? refusedRead(PictureError::NoMemory, QStringLiteral("no memory to turn it upright"))
                                 : read;
}

// Runs a step that may run out of memory. Codecs allocate their own buffers besides the picture's.
template <typename Step> PictureRead withinMemory(Step step) {
    try {
        return step();
    } catch (const std::bad_alloc &) {
        return refusedRead(PictureError::NoMemory, QStringLiteral("no memory to decode it"));
    }
}

PictureRead readFrom(QIODevice &device, const QString &name = {}) {
    return withinMemory([&] {
        Source source(device, name);
        const Found found = find(source);
        if (found.header.error != PictureError::None) {
            return refusedRead(found.header.error, found.header.reason);
        }
        PictureRead read = finished(found.format->decode(source, found.header), found.header.orientation);
        if (read.error == PictureError::None) {
            read.metadata = readMetadata(source);
        }
        return read;
    });
}

QImage reducedTo(const QImage &picture, int longerSide) {
    const int longer = std::max(picture.width(), picture.height());
    if (longer <= longerSide) {
        return picture;
    }
    const auto side = [&](int pixels) {
        return std::clamp(static_cast<int>((static_cast<qint64>(pixels) * longerSide + longer / 2) / longer), 1,
                          pixels);
    };
    return scaleByAveraging(picture, side(picture.width()), side(picture.height()));
}

// The size at which a picture of these proportions just fits into the room.
QSize fittedSize(QSize picture, QSize room) {
    const auto share = [](qint64 side, qint64 part, qint64 whole) {
        return static_cast<int>(std::max<qint64>(1, (side * part + whole / 2) / whole));
    };
    const bool isWider =
        static_cast<qint64>(picture.width()) * room.height() > static_cast<qint64>(picture.height()) * room.width();
    return isWider ? QSize(room.width(), share(picture.height(), room.width(), picture.width()))
                   : QSize(share(picture.width(), room.height(), picture.height()), room.height());
}

QSize uprightSize(const FileHeader &header) {
    const QSize stored(header.width, header.height);
    return swapsSides(header.orientation) ? stored.transposed() : stored;
}

// Decodes the picture with at least the longer side of `target(upright size)`, or whole where the format knows no
// shorter way, and has `finish(picture, target)` make the result of it.
template <typename Target, typename Finish>
PictureRead readSmallFrom(QIODevice &device, const QString &name, Target targetOf, Finish finish) {
    return withinMemory([&] {
        Source source(device, name);
        const Found found = find(source);
        const FileHeader &header = found.header;
        if (header.error != PictureError::None) {
            return refusedRead(header.error, header.reason);
        }
        const QSize target = targetOf(uprightSize(header));
        PictureRead read =
            finished(found.format->decodeSmall
                         ? found.format->decodeSmall(source, header, std::max(target.width(), target.height()))
                         : found.format->decode(source, header),
                     header.orientation);
        if (read.error == PictureError::None) {
            read.picture = finish(read.picture, target);
        }
        return read.error == PictureError::None && read.picture.isNull()
                   ? refusedRead(PictureError::NoMemory, QStringLiteral("no memory to scale it"))
                   : read;
    });
}

// A file whose reading reports progress and can be cancelled; codecs treat an early end of file as damage.
class WatchedFile : public QFile {
  public:
    using QFile::QFile;

  protected:
    qint64 readData(char *data, qint64 most) override {
        TaskControl *control = TaskControl::current();
        if (control == nullptr) {
            return QFile::readData(data, most);
        }
        if (control->isCancelled()) {
            return -1;
        }
        constexpr qint64 portion = qint64{4} << 20; // some codecs need the whole file at once
        qint64 done = 0;
        while (done < most && !control->isCancelled()) {
            const qint64 wanted = std::min(portion, most - done);
            const qint64 count = QFile::readData(data + done, wanted);
            if (count < 0) {
                return done > 0 ? done : count;
            }
            done += count;
            if (count < wanted) {
                break;
            }
        }
        m_read += done;
        control->setProgress(std::min(m_read, size()), size());
        return done;
    }

  private:
    qint64 m_read = 0;
};

PictureError errorOf(ReplaceFailure::Kind kind) {
    using Kind = ReplaceFailure::Kind;
    switch (kind) {
    case Kind::DiskFull:
        return PictureError::DiskFull;
    case Kind::FolderReadOnly:
        return PictureError::ReadOnlyFolder;
    case Kind::FileReadOnly:
        return PictureError::ReadOnlyFile;
    case Kind::NameRefused:
        return PictureError::NameRefused;
    case Kind::NameTooLong:
        return PictureError::NameTooLong;
    case Kind::Other:
        break;
    }
    return PictureError::NotWritable;
}

// Opens regular files only: a pipe or a device could block.
std::optional<QString> openForReading(QFile &file, const QString &path) {
    const int descriptor = ::open(fileNameBytes(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return qt_error_string(errno);
    }
    struct stat status {};
    const bool regular = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    if (!regular || !file.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered, QFile::AutoCloseHandle)) {
        ::close(descriptor);
        return QStringLiteral("not a regular file");
    }
    return std::nullopt;
}

} // namespace

QList<QStringList> readableExtensions() {
    QList<QStringList> result;
    for (const Format &format : formats) {
        result << QString::fromLatin1(format.extensions).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    }
    return result;
}

bool hasWritableExtension(const QString &path) {
    return writerOf(path) != nullptr;
}

bool keepsTransparency(const QString &path) {
    const FormatWriter *writer = writerOf(path);
    return writer != nullptr && writer->keepsTransparency;
}

PictureHeader readPictureHeader(const QString &path) {
    PictureHeader result;
    QFile file;
    if (const auto failure = openForReading(file, path)) {
        result.error = PictureError::NotFound;
        result.reason = *failure;
        return result;
    }
    Source source(file, path);
    const Found found = find(source);
    result.format = found.format ? QLatin1String(found.format->name) : QString();
    result.error = found.header.error;
    result.reason = found.header.reason;
    const QSize size = uprightSize(found.header);
    result.width = size.width();
    result.height = size.height();
    return result;
}

PictureRead readPicture(const QString &path) {
    WatchedFile file;
    if (const auto failure = openForReading(file, path)) {
        return refusedRead(PictureError::NotFound, *failure);
    }
    PictureRead read = readFrom(file, path);
    read.fileName = QFileInfo(path).fileName();
    return TaskControl::isCurrentCancelled() ? refusedRead(PictureError::Cancelled, QStringLiteral("stopped")) : read;
}

PictureRead readFirstPicture(const QString &path) {
    const OrdinaryPages pages;
    return readPicture(path);
}

PictureRead readThumbnail(const QString &path, int longerSide) {
    QFile file;
    if (const auto failure = openForReading(file, path)) {
        return refusedRead(PictureError::NotFound, *failure);
    }
    const int side = std::clamp(longerSide, 1, 2000);
    return readSmallFrom(
        file, path, [side](QSize) { return QSize(side, side); },
        [side](const QImage &picture, QSize) { return reducedTo(picture, side); });
}

PictureRead readFitted(const QString &path, QSize room) {
    WatchedFile file;
    if (const auto failure = openForReading(file, path)) {
        return refusedRead(PictureError::NotFound, *failure);
    }
    const PictureRead read = readSmallFrom(
        file, path, [room](QSize upright) { return fittedSize(upright, room.expandedTo(QSize(1, 1))); },
        [](const QImage &picture, QSize target) { return scaled(picture, target.width(), target.height()); });
    return TaskControl::isCurrentCancelled() ? refusedRead(PictureError::Cancelled, QStringLiteral("stopped")) : read;
}

PictureRead readPictureFromData(const QByteArray &data) {
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    const PictureRead read = readFrom(buffer);
    return TaskControl::isCurrentCancelled() ? refusedRead(PictureError::Cancelled, QStringLiteral("stopped")) : read;
}

PictureWritten writePicture(const QImage &picture, const QString &path, const PictureMetadata &metadata,
                            PrivateDetails details) {
    PictureWritten result;
    const FormatWriter *const writer = writerOf(path);
    if (writer == nullptr) {
        result.error = PictureError::UnknownType;
        result.reason = QStringLiteral("no format goes by the extension \"%1\"").arg(QFileInfo(path).suffix());
        return result;
    }
    const QImage prepared = toPicture(picture);
    if (prepared.isNull()) {
        result.error = picture.isNull() ? PictureError::NotAPicture : PictureError::NoMemory;
        result.reason = QStringLiteral("no picture to write");
        return result;
    }
    if (std::max(prepared.width(), prepared.height()) > writer->longestSide) {
        result.error = PictureError::SideTooLong;
        result.mostPixels = writer->longestSide;
        result.reason = QStringLiteral("this type ends at %1 pixels").arg(writer->longestSide);
        return result;
    }
    QString reason;
    bool outOfMemory = false;
    const auto failure = replaceFile(path, [&](QIODevice &target) {
        try {
            reason = writer->write ? writer->write(prepared, target)
                                   : writer->writeWithMetadata(prepared, target,
                                                               metadataBlocks(metadata, prepared.size(), details));
        } catch (const std::bad_alloc &) {
            outOfMemory = true;
            reason = QStringLiteral("no memory to write it");
        }
        return reason.isEmpty();
    });
    if (failure) {
        result.error = TaskControl::isCurrentCancelled() ? PictureError::Cancelled
                       : outOfMemory                     ? PictureError::NoMemory
                                                         : errorOf(failure->kind);
        result.reason = reason.isEmpty() ? failure->text : reason;
    }
    return result;
}

QByteArray encodeJpeg(const QImage &picture, int quality) {
    const QImage prepared = toPicture(picture);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (prepared.isNull() || !writeJpeg(prepared, buffer, quality).isEmpty()) {
        return {};
    }
    return buffer.data();
}

} // namespace lumora
