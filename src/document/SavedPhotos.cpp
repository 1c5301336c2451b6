#include "document/SavedPhotos.h"

#include "base/FileName.h"
#include "base/ReplaceFile.h"
#include "document/PrivateFolder.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace lumora {

namespace {

constexpr const char *listName = "/saved-photos";
constexpr const char *listLockName = "saved-photos.lock";
constexpr qint64 mostListBytes = 4 << 20; // longer is none of Lumora's
constexpr int lockTries = 200;            // two seconds, for a busy machine
constexpr std::chrono::milliseconds lockWait(10);

/// Held while the list is read and written, so that of two programs that save at once both are noted; where nothing can
/// be locked it goes without.
class ListLock {
  public:
    explicit ListLock(int folder)
        : m_file(::openat(folder, listLockName, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600)) {
        for (int n = 0; m_file >= 0 && n < lockTries && ::flock(m_file, LOCK_EX | LOCK_NB) != 0; ++n) {
            if (errno != EWOULDBLOCK && errno != EINTR) {
                break; // nothing can be locked here
            }
            std::this_thread::sleep_for(lockWait);
        }
    }
    ~ListLock() {
        if (m_file >= 0) {
            ::close(m_file);
        }
    }
    ListLock(const ListLock &) = delete;
    ListLock &operator=(const ListLock &) = delete;

  private:
    const int m_file;
};

} // namespace

SavedPhotos::SavedPhotos(const QString &recoveryFolder) : m_folder(recoveryFolder) {}

/// A line each: milliseconds since 1970, a blank, the bytes of the path with percent signs.
QList<SavedPhoto> SavedPhotos::all() const {
    QList<SavedPhoto> photos;
    QFile file(m_folder + QLatin1String(listName));
    if (m_folder.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        return photos;
    }
    for (const QByteArray &line : file.read(mostListBytes).split('\n')) {
        const qsizetype blank = line.indexOf(' ');
        bool isNumber = false;
        const qint64 when = line.left(std::max<qsizetype>(blank, 0)).toLongLong(&isNumber);
        const QString path = fileNameOf(QByteArray::fromPercentEncoding(line.mid(blank + 1)));
        if (isNumber && path.startsWith(QLatin1Char('/')) && photos.size() < mostPhotos) {
            photos += {path, QDateTime::fromMSecsSinceEpoch(when)};
        }
    }
    return photos;
}

void SavedPhotos::add(const QString &path) {
    const int folder = m_folder.isEmpty() ? -1 : makePrivateFolder(m_folder);
    if (folder < 0) {
        return;
    }
    {
        const ListLock lock(folder);
        const QString absolute = QDir::cleanPath(QDir::current().absoluteFilePath(path));
        QList<SavedPhoto> photos = all();
        photos.removeIf([&](const SavedPhoto &photo) { return photo.path == absolute; });
        photos.prepend({absolute, QDateTime::currentDateTime()});
        QByteArray lines;
        for (const SavedPhoto &photo : photos.first(std::min<qsizetype>(photos.size(), mostPhotos))) {
            lines += QByteArray::number(photo.when.toMSecsSinceEpoch()) + ' ' +
                     fileNameBytes(photo.path).toPercentEncoding("/") + '\n';
        }
        replaceFile(m_folder + QLatin1String(listName),
                    [&](QIODevice &file) { return file.write(lines) == lines.size(); });
    }
    ::close(folder);
}

QList<SavedPhoto> SavedPhotos::list() const {
    QList<SavedPhoto> photos = all();
    photos.removeIf([](const SavedPhoto &photo) { return !isFile(photo.path); });
    return photos;
}

} // namespace lumora
