#include "document/PrivateFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace lumora {

int folderFlags() {
    return O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
}

bool isOwnFolder(int folder) {
    struct stat status {};
    return ::fstat(folder, &status) == 0 && status.st_uid == ::geteuid() && status.st_nlink > 0;
}

int openPrivateFolder(const QString &path) {
    const int folder = ::open(QFile::encodeName(path).constData(), folderFlags());
    if (folder >= 0 && !(isOwnFolder(folder) && ::fchmod(folder, 0700) == 0)) {
        ::close(folder);
        return -1;
    }
    return folder;
}

int makePrivateFolder(const QString &path) {
    QDir().mkpath(QFileInfo(path).path());
    ::mkdir(QFile::encodeName(path).constData(), 0700);
    return openPrivateFolder(path);
}

qint64 halfOfFreeBytes(int folder) {
    struct statvfs space {};
    return ::fstatvfs(folder, &space) == 0
               ? static_cast<qint64>(space.f_bavail) * static_cast<qint64>(space.f_frsize) / 2
               : 0;
}

} // namespace lumora
