#include "document/RecoveryCopy.h"

#include "document/CompressedPicture.h"
#include "imaging/Picture.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QIODevice>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <new>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace lumora {

namespace {

constexpr std::array<char, 8> mark{'L', 'u', 'm', 'o', 'r', 'a', 'R', '2'};
constexpr auto checksumMethod = QCryptographicHash::Blake2b_256;
constexpr int checksumBytes = 32;
constexpr qint32 mostMetadata = 4 << 20; // bytes; no file that Lumora reads has so much

struct Header {
    std::array<char, 8> magic = mark;
    qint32 width = 0;
    qint32 height = 0;
    qint32 opaque = 0;
    qint32 metadataBytes = 0; ///< between the header and the pixels
    std::array<char, checksumBytes>
        checksum{}; ///< of the fields above and the metadata; strips of pixels have their own
};
static_assert(sizeof(Header) == 24 + checksumBytes, "no holes, which would hold chance bytes");

std::array<char, checksumBytes> checksumOf(const Header &header, const QByteArray &metadata) {
    QCryptographicHash sum(checksumMethod);
    sum.addData({reinterpret_cast<const char *>(&header), offsetof(Header, checksum)});
    sum.addData(metadata);
    const QByteArray hash = sum.result();
    std::array<char, checksumBytes> checksum{};
    std::memcpy(checksum.data(), hash.constData(), checksumBytes);
    return checksum;
}

/// Few enough for what a click starts in the meantime.
int writingThreads() {
    return static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, 4U));
}

/// More than pixels that cannot be squeezed take, with the heads of their strips.
qint64 largestFile(const Header &header) {
    const qint64 pixels = qint64{header.width} * header.height;
    return qint64{sizeof(Header)} + header.metadataBytes + 4 * pixels + pixels / 16 + qint64{1024} * header.height +
           65536;
}

bool isPlausible(const Header &header, qint64 fileBytes) {
    return header.magic == mark && header.width > 0 && header.height > 0 && header.metadataBytes >= 0 &&
           header.metadataBytes <= mostMetadata && qint64{header.width} * header.height <= maxPicturePixels &&
           (header.opaque == 0 || header.opaque == 1) && fileBytes <= largestFile(header);
}

QByteArray metadataBytes(const PictureMetadata &metadata) {
    QByteArray bytes;
    QDataStream to(&bytes, QIODevice::WriteOnly);
    to.setVersion(QDataStream::Qt_6_0);
    to << metadata.exif << metadata.xmp << metadata.iptc << metadata.texts << metadata.dotsPerInchX
       << metadata.dotsPerInchY << metadata.made;
    return bytes.size() <= mostMetadata ? bytes : QByteArray();
}

/// None from no bytes.
PictureMetadata metadataFrom(const QByteArray &bytes) {
    PictureMetadata metadata;
    QDataStream from(bytes);
    from.setVersion(QDataStream::Qt_6_0);
    from >> metadata.exif >> metadata.xmp >> metadata.iptc >> metadata.texts >> metadata.dotsPerInchX >>
        metadata.dotsPerInchY >> metadata.made;
    return from.status() == QDataStream::Ok ? metadata : PictureMetadata();
}

/// Why the copy could not be read to its end: a disk that refuses to read it may give it another time, a file that ends
/// too early or holds something else does not.
CopyRead whyUnread(int error) {
    return error == 0 ? CopyRead::Damaged : CopyRead::NotNow;
}

} // namespace

bool writeRecoveryCopy(int file, const KeptPhoto &photo, qint64 limit, const std::stop_token &stop) {
    const QImage &picture = photo.picture;
    const QByteArray metadata = metadataBytes(photo.metadata);
    Header header;
    header.width = picture.width();
    header.height = picture.height();
    header.opaque = picture.format() == QImage::Format_RGB32 ? 1 : 0;
    header.metadataBytes = static_cast<qint32>(metadata.size());
    header.checksum = checksumOf(header, metadata);
    return writeAll(file, &header, sizeof header) &&
           writeAll(file, metadata.constData(), static_cast<std::size_t>(metadata.size())) &&
           writeCompressed(file, picture, true, limit, stop, writingThreads()) >= 0;
}

CopyRead readRecoveryCopy(int file, KeptPhoto &photo) {
    struct stat status {};
    Header header;
    if (::fstat(file, &status) != 0) {
        return CopyRead::NotNow;
    }
    if (!readAll(file, &header, sizeof header)) {
        return whyUnread(errno);
    }
    if (!isPlausible(header, status.st_size)) {
        return CopyRead::Damaged;
    }
    try {
        QByteArray metadata(header.metadataBytes, '\0');
        if (!readAll(file, metadata.data(), static_cast<std::size_t>(metadata.size()))) {
            return whyUnread(errno);
        }
        if (header.checksum != checksumOf(header, metadata)) {
            return CopyRead::Damaged;
        }
        QImage target = newPicture(header.width, header.height, header.opaque == 1);
        if (target.isNull()) {
            return CopyRead::NotNow;
        }
        if (!readCompressed(file, target)) {
            return whyUnread(errno);
        }
        char more = 0;
        if (readAll(file, &more, 1)) {
            return CopyRead::Damaged; // it goes on behind the picture
        }
        if (errno != 0) {
            return CopyRead::NotNow;
        }
        photo = {target, metadataFrom(metadata)};
    } catch (const std::bad_alloc &) {
        return CopyRead::NotNow;
    }
    return CopyRead::Done;
}

} // namespace lumora
