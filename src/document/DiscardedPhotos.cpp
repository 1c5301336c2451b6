#include "document/DiscardedPhotos.h"

#include "document/PrivateFolder.h"
#include "document/RecoveryCopy.h"
#include "document/RecoveryFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumora {

namespace {

constexpr const char *folderName = "/thrown-away";
constexpr const char *fileSuffix = ".lumora-photo";

bool isOwnFile(const struct stat &status) {
    return S_ISREG(status.st_mode) && status.st_uid == ::geteuid();
}

/// Every photo of the folder, the newest first.
QList<DiscardedPhoto> photosIn(const QString &path) {
    QList<DiscardedPhoto> photos;
    for (const QString &name : QDir(path).entryList({QLatin1Char('*') + QLatin1String(fileSuffix)}, QDir::Files)) {
        const QString file = path + QLatin1Char('/') + name;
        struct stat status {};
        if (::lstat(QFile::encodeName(file).constData(), &status) == 0 && isOwnFile(status)) {
            const qint64 milliseconds = qint64{status.st_mtim.tv_sec} * 1000 + status.st_mtim.tv_nsec / 1'000'000;
            photos += {file, QDateTime::fromMSecsSinceEpoch(milliseconds), status.st_size};
        }
    }
    std::stable_sort(photos.begin(), photos.end(),
                     [](const DiscardedPhoto &a, const DiscardedPhoto &b) { return a.when > b.when; });
    return photos;
}

bool isTooOld(const DiscardedPhoto &photo) {
    constexpr qint64 day = 24 * 60 * 60; // seconds
    return photo.when.secsTo(QDateTime::currentDateTime()) >= DiscardedPhotos::keptDays * day;
}

} // namespace

DiscardedPhotos::DiscardedPhotos(const QString &recoveryFolder, qint64 limit)
    : m_folder(recoveryFolder.isEmpty() ? QString() : recoveryFolder + QLatin1String(folderName)), m_limit(limit) {}

QList<DiscardedPhoto> DiscardedPhotos::list() const {
    const int folder = m_folder.isEmpty() ? -1 : openPrivateFolder(m_folder);
    if (folder < 0) {
        return {};
    }
    ::close(folder);
    QList<DiscardedPhoto> photos = photosIn(m_folder);
    photos.removeIf(isTooOld);
    return photos;
}

bool DiscardedPhotos::holds(const QString &path) const {
    return !m_folder.isEmpty() && path.startsWith(m_folder + QLatin1Char('/')) && isName(path);
}

bool DiscardedPhotos::isName(const QString &path) {
    return path.endsWith(QLatin1String(fileSuffix));
}

PictureRead DiscardedPhotos::read(const QString &path) {
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    PictureRead read;
    if (file < 0) {
        read.error = PictureError::NotFound;
        return read;
    }
    struct stat status {};
    KeptPhoto photo;
    const bool good = ::fstat(file, &status) == 0 && isOwnFile(status);
    const CopyRead outcome = good ? readRecoveryCopy(file, photo) : CopyRead::Damaged;
    ::close(file);
    if (outcome == CopyRead::Done) {
        read.picture = photo.picture;
        read.metadata = photo.metadata;
    } else {
        read.error = outcome == CopyRead::Damaged ? PictureError::Damaged : PictureError::NoMemory;
    }
    return read;
}

QString DiscardedPhotos::take(RecoveryFolder &from) {
    const int folder = m_folder.isEmpty() ? -1 : makePrivateFolder(m_folder);
    if (folder < 0) {
        return {};
    }
    const std::string name = std::to_string(QRandomGenerator::system()->generate64()) + fileSuffix;
    const bool taken = from.moveCopy(folder, name);
    if (taken) {
        ::utimensat(folder, name.c_str(), nullptr, AT_SYMLINK_NOFOLLOW); // written earlier, thrown away now
        ::fsync(folder);
    }
    ::close(folder);
    sweep();
    return taken ? m_folder + QLatin1Char('/') + QString::fromStdString(name) : QString();
}

bool DiscardedPhotos::renew(const QString &path) {
    return holds(path) && ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), nullptr, AT_SYMLINK_NOFOLLOW) == 0;
}

void DiscardedPhotos::sweep() {
    const int folder = m_folder.isEmpty() ? -1 : openPrivateFolder(m_folder);
    if (folder < 0) {
        return;
    }
    qint64 bytes = 0;
    int photos = 0;
    for (const DiscardedPhoto &photo : photosIn(m_folder)) {
        bytes += photo.bytes;
        ++photos;
        if (isTooOld(photo) || (photos > 1 && (bytes > m_limit || photos > mostPhotos))) {
            ::unlinkat(folder, QFile::encodeName(QFileInfo(photo.path).fileName()).constData(), 0);
        }
    }
    ::close(folder);
}

void DiscardedPhotos::clear() {
    const int folder = m_folder.isEmpty() ? -1 : openPrivateFolder(m_folder);
    if (folder < 0) {
        return;
    }
    for (const DiscardedPhoto &photo : photosIn(m_folder)) {
        ::unlinkat(folder, QFile::encodeName(QFileInfo(photo.path).fileName()).constData(), 0);
    }
    ::close(folder);
    QDir().rmdir(m_folder);
}

} // namespace lumora
