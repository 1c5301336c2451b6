#include "document/SpillFolder.h"

#include <QFile>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <limits>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <vector>

namespace lumora {

namespace {

constexpr const char *namePrefix = "lumora-history-";

std::vector<std::string> namesIn(int folder) {
    std::vector<std::string> names;
    const int copy = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR *const stream = copy < 0 ? nullptr : ::fdopendir(copy);
    if (stream == nullptr) {
        if (copy >= 0) {
            ::close(copy);
        }
        return names;
    }
    // Only the worker thread of one folder and the sweep come here, each with its own stream.
    while (const dirent *const entry = ::readdir(stream)) { // NOLINT(concurrency-mt-unsafe)
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
            names.emplace_back(entry->d_name);
        }
    }
    ::closedir(stream);
    return names;
}

void removeFiles(int folder) {
    for (const std::string &name : namesIn(folder)) {
        ::unlinkat(folder, name.c_str(), 0);
    }
}

/// Whether a folder's name is one that make() gives.
bool isOwnName(const std::string &name) {
    const size_t length = std::strlen(namePrefix);
    if (name.compare(0, length, namePrefix) != 0) {
        return false;
    }
    char *end = nullptr;
    const long pid = std::strtol(name.c_str() + length, &end, 10);
    return *end == '-' && pid > 0;
}

} // namespace

SpillFolder::SpillFolder(const QString &parent) : m_parent(QFile::encodeName(parent).toStdString()) {}

SpillFolder::~SpillFolder() {
    if (m_folder >= 0) {
        removeFiles(m_folder);
        ::rmdir(m_path.c_str());
        ::close(m_folder);
    }
}

bool SpillFolder::make() {
    struct stat status {};
    // One that cannot be asked is still there: only one that was removed (a cleared cache) is left, with its files.
    if (m_folder >= 0 && (::fstat(m_folder, &status) != 0 || status.st_nlink > 0)) {
        return true;
    }
    if (m_folder >= 0) {
        ::close(m_folder);
        m_folder = -1;
    }
    for (int attempt = 0; attempt < 3; ++attempt) {
        m_path = m_parent + '/' + namePrefix + std::to_string(::getpid()) + "-XXXXXX";
        if (::mkdtemp(m_path.data()) == nullptr) {
            return false;
        }
        const int folder = ::open(m_path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        // Where nothing can be locked, nobody else can lock and sweep it either.
        const bool isOurs = folder >= 0 && (::flock(folder, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK);
        if (isOurs && ::fstat(folder, &status) == 0 && status.st_nlink > 0) {
            m_folder = folder;
            return true;
        }
        // A program that starts at this moment swept it before it was locked.
        if (folder >= 0) {
            ::close(folder);
        }
        ::rmdir(m_path.c_str());
    }
    return false;
}

int SpillFolder::create(const std::string &name) {
    const std::lock_guard lock(m_mutex);
    return make() ? ::openat(m_folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600) : -1;
}

int SpillFolder::open(const std::string &name) const {
    const std::lock_guard lock(m_mutex);
    errno = ENOENT; // without a folder
    return m_folder < 0 ? -1 : ::openat(m_folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
}

void SpillFolder::remove(const std::string &name) const {
    const std::lock_guard lock(m_mutex);
    if (m_folder >= 0) {
        ::unlinkat(m_folder, name.c_str(), 0);
    }
}

qint64 SpillFolder::freeBytes() const {
    struct statvfs space {};
    if (::statvfs(m_parent.c_str(), &space) != 0) {
        return std::numeric_limits<qint64>::max();
    }
    return static_cast<qint64>(space.f_bavail) * static_cast<qint64>(space.f_frsize);
}

void SpillFolder::sweep(const QString &parent) {
    const int top = ::open(QFile::encodeName(parent).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (top < 0) {
        return;
    }
    for (const std::string &name : namesIn(top)) {
        if (!isOwnName(name)) {
            continue;
        }
        const int folder = ::openat(top, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (folder < 0) {
            continue;
        }
        struct stat status {};
        // The lock alone marks a running program: process numbers are given out again, and those of another container
        // are not seen from here.
        if (::fstat(folder, &status) == 0 && status.st_uid == ::geteuid() && ::flock(folder, LOCK_EX | LOCK_NB) == 0) {
            removeFiles(folder);
            ::unlinkat(top, name.c_str(), AT_REMOVEDIR);
        }
        ::close(folder);
    }
    ::close(top);
}

} // namespace lumora
