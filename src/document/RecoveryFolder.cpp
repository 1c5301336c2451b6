#include "document/RecoveryFolder.h"

#include "base/ReplaceFile.h"
#include "base/basMisc.h"
#include "document/PrivateFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace lumora {

namespace {

constexpr const char *folderPrefix = "photo-";
constexpr const char *asidePrefix = "damaged-";
// A copy goes from one name to the next: being written; whole, so that a crash of the program leaves it; flushed to the
// disk, so that a power cut does.
constexpr const char *partName = "copy.part";
constexpr const char *wholeName = "copy.new";
constexpr const char *copyName = "copy";
constexpr const char *lockName = "lock"; // a file: network file systems lock no folders

} // namespace

RecoveryFolder::RecoveryFolder(const QString &parent) : m_parentPath(parent) {}

RecoveryFolder::~RecoveryFolder() {
    close();
}

void RecoveryFolder::close() {
    for (int *descriptor : {&m_folder, &m_parent, &m_lock}) {
        if (*descriptor >= 0) {
            ::close(std::exchange(*descriptor, -1));
        }
    }
}

QString RecoveryFolder::usualParent() {
    QString folder = stateFolder() + "/recovery";
    QString former = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/Lumora/recovery";
    if (QFileInfo::exists(former) && !QFileInfo::exists(folder)) {
        QDir().mkpath(stateFolder());
        if (!QDir().rename(former, folder)) {
            return former; // on another disk, or not to be moved
        }
    }
    return folder;
}

/// Opens and locks that folder; false when it is another user's, in use, no folder or gone.
bool RecoveryFolder::enter(int parent, const std::string &name) {
    const int folder = ::openat(parent, name.c_str(), folderFlags());
    if (folder < 0) {
        return false;
    }
    const int lock =
        isOwnFolder(folder) ? ::openat(folder, lockName, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600) : -1;
    // Another program may have removed the folder before the lock was had: then it has no name any more.
    if (lock < 0 || ::flock(lock, LOCK_EX | LOCK_NB) != 0 || !isOwnFolder(folder)) {
        ::close(folder);
        if (lock >= 0) {
            ::close(lock);
        }
        return false;
    }
    close();
    m_folder = folder;
    m_lock = lock;
    m_parent = ::fcntl(parent, F_DUPFD_CLOEXEC, 0);
    m_name = name;
    return true;
}

bool RecoveryFolder::make() {
    if (m_folder >= 0 && isOwnFolder(m_folder)) {
        return true;
    }
    close();
    const int parent = makePrivateFolder(m_parentPath);
    bool made = false;
    for (int attempt = 0; attempt < 3 && !made && parent >= 0; ++attempt) {
        const std::string name = folderPrefix + std::to_string(QRandomGenerator::system()->generate64());
        if (::mkdirat(parent, name.c_str(), 0700) != 0) {
            break;
        }
        made = enter(parent, name);
        if (!made) { // a program that starts at this moment took it for an empty one, or nothing can be locked here
            ::unlinkat(parent, (name + '/' + lockName).c_str(), 0);
            ::unlinkat(parent, name.c_str(), AT_REMOVEDIR);
        }
    }
    if (parent >= 0) {
        ::close(parent);
    }
    return made;
}

bool RecoveryFolder::write(const KeptPhoto &photo, const std::stop_token &stop) {
    if (!make()) {
        return false;
    }
    ::unlinkat(m_folder, partName, 0);
    const int file = ::openat(m_folder, partName, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (file < 0) {
        return false;
    }
    const bool whole = writeRecoveryCopy(file, photo, halfOfFreeBytes(m_folder), stop) &&
                       ::renameat(m_folder, partName, m_folder, wholeName) == 0;
    const bool flushed = whole && ::fdatasync(file) == 0;
    const bool kept = ::close(file) == 0 && flushed && ::renameat(m_folder, wholeName, m_folder, copyName) == 0;
    if (kept) {
        ::fsync(m_folder); // the new name lasts through a power cut
    } else {
        ::unlinkat(m_folder, whole ? wholeName : partName, 0);
    }
    return kept;
}

bool RecoveryFolder::moveCopy(int folder, const std::string &name) {
    if (m_folder < 0 || ::renameat(m_folder, copyName, folder, name.c_str()) != 0) {
        return false;
    }
    clear();
    return true;
}

void RecoveryFolder::clear() {
    if (m_folder >= 0) {
        for (const char *name : {copyName, wholeName, partName, lockName}) {
            ::unlinkat(m_folder, name, 0);
        }
        ::unlinkat(m_parent, m_name.c_str(), AT_REMOVEDIR);
        close();
    }
}

CopyRead RecoveryFolder::readCopy(KeptPhoto &photo) const {
    const CopyRead newest = readFile(wholeName, photo); // a power cut may have left it in pieces
    if (newest == CopyRead::Done) {
        return newest;
    }
    const CopyRead flushed = readFile(copyName, photo);
    return flushed == CopyRead::Damaged ? newest : flushed;
}

CopyRead RecoveryFolder::readFile(const char *name, KeptPhoto &photo) const {
    // A pipe of that name would keep the program waiting without O_NONBLOCK.
    const int file = ::openat(m_folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) {
        return errno == ENOENT || errno == ELOOP ? CopyRead::Damaged : CopyRead::NotNow;
    }
    struct stat status {};
    const bool isKnown = ::fstat(file, &status) == 0;
    const bool good = isKnown && S_ISREG(status.st_mode) && status.st_uid == ::geteuid();
    const CopyRead read = good ? readRecoveryCopy(file, photo) : isKnown ? CopyRead::Damaged : CopyRead::NotNow;
    ::close(file);
    return read;
}

/// When the newer of its copies was written, in seconds and nanoseconds.
std::pair<qint64, qint64> RecoveryFolder::lastWritten() const {
    std::pair<qint64, qint64> newest;
    for (const char *name : {copyName, wholeName}) {
        struct stat status {};
        if (::fstatat(m_folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
            newest = std::max(newest, std::pair<qint64, qint64>(status.st_mtim.tv_sec, status.st_mtim.tv_nsec));
        }
    }
    return newest;
}

/// Keeps a copy that cannot be read where no program looks for one: parts of it may still be worth something. False,
/// and all is removed, when there is nothing in it.
bool RecoveryFolder::putAside() {
    const auto hasContent = [this](const char *name) {
        struct stat status {};
        return ::fstatat(m_folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(status.st_mode) &&
               status.st_size > 0;
    };
    const std::string aside = asidePrefix + m_name.substr(std::strlen(folderPrefix));
    if ((hasContent(copyName) || hasContent(wholeName)) &&
        ::renameat(m_parent, m_name.c_str(), m_parent, aside.c_str()) == 0) {
        ::unlinkat(m_folder, lockName, 0);
        close();
        return true;
    }
    clear();
    return false;
}

namespace {

QStringList foldersIn(const QString &parent) {
    return QDir(parent).entryList({QLatin1String(folderPrefix) + QLatin1Char('*')}, QDir::Dirs);
}

} // namespace

bool RecoveryFolder::mayHaveCopies(const QString &parent) {
    return !parent.isEmpty() && !foldersIn(parent).isEmpty();
}

std::unique_ptr<RecoveryFolder> RecoveryFolder::findNewest(const QString &parent, KeptPhoto &photo, int *damaged) {
    removeUnfinished();
    std::vector<std::pair<std::pair<qint64, qint64>, std::unique_ptr<RecoveryFolder>>> left;
    const int top = openPrivateFolder(parent);
    if (top < 0) {
        return nullptr;
    }
    for (const QString &name : foldersIn(parent)) {
        auto folder = std::make_unique<RecoveryFolder>(parent);
        if (!folder->enter(top, QFile::encodeName(name).toStdString())) {
            continue;
        }
        const auto time = folder->lastWritten();
        left.emplace_back(time, std::move(folder));
    }
    ::close(top);
    std::sort(left.begin(), left.end(), [](const auto &a, const auto &b) { return a.first > b.first; });
    for (auto &[time, folder] : left) {
        const CopyRead read = folder->readCopy(photo);
        if (read == CopyRead::Done) {
            return std::move(folder);
        }
        if (read == CopyRead::Damaged && folder->putAside() && damaged != nullptr) {
            ++*damaged;
        }
    }
    return nullptr;
}

} // namespace lumora
