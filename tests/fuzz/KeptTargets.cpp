#include "document/RecoveryCopy.h"
#include "fuzz/Targets.h"

#include <QCryptographicHash>
#include <QtEndian>
#include <climits>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace lumora::fuzz {

namespace {

// The fields of a copy's header, then their checksum, which covers the metadata too.
constexpr qsizetype fieldBytes = 24;
constexpr qsizetype metadataLengthAt = 20;
constexpr qsizetype checksumBytes = 32;

QByteArray withChecksum(QByteArray copy) {
    if (copy.size() < fieldBytes + checksumBytes) {
        return copy;
    }
    QCryptographicHash sum(QCryptographicHash::Blake2b_256);
    sum.addData({copy.constData(), fieldBytes});
    const qsizetype length = qFromLittleEndian<qint32>(copy.constData() + metadataLengthAt);
    sum.addData(copy.mid(fieldBytes + checksumBytes, std::max<qsizetype>(0, length)));
    return copy.replace(fieldBytes, checksumBytes, sum.result());
}

CopyRead readBack(int file, KeptPhoto &photo) {
    ::lseek(file, 0, SEEK_SET);
    return readRecoveryCopy(file, photo);
}

} // namespace

void readAsRecoveryCopy(const QByteArray &bytes, const char *) {
    const QByteArray copy = withChecksum(bytes);
    const int file = ::memfd_create("copy", MFD_CLOEXEC);
    require(file >= 0 && ::write(file, copy.constData(), copy.size()) == copy.size(), "a file in memory");
    KeptPhoto photo;
    const CopyRead read = readBack(file, photo);
    require(photo.picture.isNull() == (read != CopyRead::Done), "a photo only from a whole copy");
    if (read == CopyRead::Done) {
        require(::ftruncate(file, 0) == 0 && ::lseek(file, 0, SEEK_SET) == 0, "an empty file in memory");
        KeptPhoto again;
        require(writeRecoveryCopy(file, photo, LLONG_MAX, {}), "what was read can be kept again");
        require(readBack(file, again) == CopyRead::Done && again.picture == photo.picture, "the same photo again");
    }
    ::close(file);
}

} // namespace lumora::fuzz
