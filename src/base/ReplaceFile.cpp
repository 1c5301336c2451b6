#include "base/ReplaceFile.h"

#include "base/FileName.h"
#include "base/TaskControl.h"
#include "base/basMisc.h"

#include <QDir>
#include <QRandomGenerator>
#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace lumora {

namespace {

constexpr char descriptorFolder[] = "/proc/self/fd/";

using Kind = ReplaceFailure::Kind;

Kind kindOf(int error) {
    switch (error) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return Kind::DiskFull;
    case EACCES:
    case EPERM:
    case EROFS:
        return Kind::FolderReadOnly;
    case EINVAL:
    case EILSEQ:
        return Kind::NameRefused;
    case ENAMETOOLONG:
        return Kind::NameTooLong;
    default:
        return Kind::Other;
    }
}

ReplaceFailure failure(const char *doing, int error) {
    return {kindOf(error), QString::fromLatin1("%1: %2").arg(QLatin1String(doing), qt_error_string(error))};
}

ReplaceFailure failure(const char *what) {
    return {Kind::Other, QString::fromLatin1(what)};
}

// The target of a chain of symbolic links, whether it exists or not. Empty for a cycle.
std::filesystem::path linkTarget(std::filesystem::path path) {
    constexpr int mostLinks = 40; // the limit of the Linux kernel
    for (int i = 0; i < mostLinks; ++i) {
        std::error_code none;
        const std::filesystem::path target = std::filesystem::read_symlink(path, none);
        if (none) {
            return path;
        }
        path = path.parent_path() / target;
    }
    return {};
}

constexpr std::string_view nameLead = ".lumora-";
constexpr std::string_view nameEnd = ".tmp";

bool isTemporaryName(const std::string &name) {
    if (name.size() <= nameLead.size() + nameEnd.size() || name.rfind(nameLead, 0) != 0 ||
        name.compare(name.size() - nameEnd.size(), nameEnd.size(), nameEnd) != 0) {
        return false;
    }
    return std::all_of(name.begin() + nameLead.size(), name.end() - nameEnd.size(),
                       [](unsigned char sign) { return std::isdigit(sign) != 0; });
}

std::filesystem::path temporaryName(const std::filesystem::path &folder) {
    const quint64 number = QRandomGenerator::system()->generate64();
    return folder / (std::string(nameLead) + std::to_string(number) + std::string(nameEnd));
}

/// Removes what a process that was killed has left. Each locks its temporary file, and the system unlocks it with the
/// end of the process. False while it is locked.
bool removeLeftover(const std::filesystem::path &name) {
    const int descriptor = ::open(name.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return true;
    }
    const bool left = ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
    if (left) {
        ::unlink(name.c_str());
    }
    ::close(descriptor);
    return left;
}

/// All files in the folder with a temporary name.
std::vector<std::filesystem::path> temporariesIn(const std::filesystem::path &folder) {
    std::vector<std::filesystem::path> names;
    std::error_code none;
    for (std::filesystem::directory_iterator at(folder, none), end; !none && at != end; at.increment(none)) {
        if (isTemporaryName(at->path().filename())) {
            names.push_back(at->path());
        }
    }
    return names;
}

void removeLeftovers(const std::filesystem::path &folder) {
    for (const std::filesystem::path &name : temporariesIn(folder)) {
        removeLeftover(name);
    }
}

/// For each temporary file that has a name, for just so long, a link to it: so the next start need not look for it.
std::filesystem::path notesFolder() {
    return std::filesystem::path(fileNameBytes(stateFolder()).toStdString()) / "unfinished";
}

void note(const std::filesystem::path &name) {
    const std::filesystem::path notes = notesFolder();
    std::error_code failed;
    const std::filesystem::path target = std::filesystem::absolute(name, failed);
    std::filesystem::create_symlink(target, notes / name.filename(), failed);
    if (failed == std::errc::no_such_file_or_directory) {
        QDir().mkpath(stateFolder());
        ::mkdir(notes.c_str(), 0700);
        std::filesystem::create_symlink(target, notes / name.filename(), failed);
    }
}

void forget(const std::filesystem::path &name) {
    ::unlink((notesFolder() / name.filename()).c_str());
}

// The temporary file, with a name only while there is no other way; removed unless it became the file.
class Temporary {
  public:
    enum class Way { WithoutName, WithName };

    Temporary(const std::filesystem::path &folder, Way way) : m_folder(folder) {
        way == Way::WithoutName ? openWithoutName() : openWithName();
    }
    Temporary(const Temporary &) = delete;
    Temporary &operator=(const Temporary &) = delete;
    ~Temporary() {
        if (m_descriptor >= 0) {
            ::close(m_descriptor);
        }
        if (!m_name.empty()) {
            ::unlink(m_name.c_str());
            forget(m_name);
        }
    }

    int descriptor() const { return m_descriptor; }
    int error() const { return m_error; } ///< of the system's call that failed

    /// Gives the file that name; another file of the name is replaced.
    bool become(const std::filesystem::path &path) {
        if (m_name.empty() && link(path)) {
            return true;
        }
        if (m_name.empty()) {
            if (m_error != EEXIST) {
                return false;
            }
            m_name = temporaryName(m_folder);
            note(m_name);
            if (!link(m_name)) {
                forget(m_name);
                m_name.clear();
                return false;
            }
        }
        if (::rename(m_name.c_str(), path.c_str()) != 0) {
            m_error = errno;
            return false;
        }
        forget(m_name);
        m_name.clear();
        return true;
    }

  private:
    void openWithoutName() {
        m_descriptor = ::open(m_folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666);
        if (m_descriptor < 0) {
            m_error = errno;
        } else {
            ::flock(m_descriptor, LOCK_EX | LOCK_NB); // for the moment in which it has a temporary name
        }
    }

    void openWithName() {
        for (int attempt = 0; attempt < 100 && m_descriptor < 0; ++attempt) {
            const std::filesystem::path name = temporaryName(m_folder);
            note(name);
            m_descriptor = ::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            m_error = errno;
            if (m_descriptor < 0) {
                forget(name);
                if (m_error != EEXIST) {
                    return;
                }
                continue;
            }
            // Before it was locked another process may have taken it for a leftover.
            struct stat status {};
            ::flock(m_descriptor, LOCK_EX | LOCK_NB);
            if (::fstat(m_descriptor, &status) == 0 && status.st_nlink > 0) {
                m_name = name;
            } else {
                ::close(std::exchange(m_descriptor, -1));
                forget(name);
            }
        }
    }

    bool link(const std::filesystem::path &path) {
        const std::string self = descriptorFolder + std::to_string(m_descriptor);
        const bool linked = ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
        m_error = linked ? 0 : errno;
        return linked;
    }

    const std::filesystem::path m_folder;
    std::filesystem::path m_name; ///< empty while it has none
    int m_descriptor = -1;
    int m_error = 0;
};

/// Writes to the descriptor and keeps the number of the first error, which QFile gives as a translated text only.
class Target : public QIODevice {
  public:
    explicit Target(int descriptor) : m_descriptor(descriptor) { open(ReadWrite | Unbuffered); }

    qint64 size() const override { return std::max(m_size, m_start + m_waiting.size()); }
    int error() const { return m_error; }

    bool flush() {
        qint64 done = 0;
        while (m_error == 0 && done < m_waiting.size()) {
            const ssize_t count = ::pwrite(m_descriptor, m_waiting.constData() + done,
                                           static_cast<std::size_t>(m_waiting.size() - done), m_start + done);
            if (count < 0 && errno != EINTR) {
                m_error = errno;
                setErrorString(qt_error_string(m_error));
            }
            done += std::max<ssize_t>(count, 0);
        }
        m_size = std::max(m_size, m_start + done);
        m_start += m_waiting.size();
        m_waiting.clear();
        return m_error == 0;
    }

  protected:
    qint64 readData(char *to, qint64 most) override {
        return flush() ? ::pread(m_descriptor, to, static_cast<std::size_t>(most), pos()) : -1;
    }
    qint64 writeData(const char *from, qint64 count) override {
        constexpr qint64 portion = 1 << 20;
        if (pos() != m_start + m_waiting.size() || m_waiting.size() >= portion) {
            if (!flush()) {
                return -1;
            }
            m_start = pos();
        }
        m_waiting.append(from, count);
        return m_waiting.size() < portion || flush() ? count : -1;
    }

  private:
    const int m_descriptor;
    int m_error = 0;
    qint64 m_size = 0;
    qint64 m_start = 0; ///< where the bytes that wait belong
    QByteArray m_waiting;
};

std::optional<ReplaceFailure> fill(int descriptor, const std::function<bool(QIODevice &)> &write) {
    Target target(descriptor);
    const bool written = write(target);
    if (!target.flush()) {
        return failure("cannot write", target.error());
    }
    if (!written) {
        return failure("the contents could not be made");
    }
    if (::fsync(descriptor) != 0) {
        return failure("cannot flush", errno);
    }
    return std::nullopt;
}

// As far as the system allows: only the superuser can change the owner, and FAT file systems have no modes. A picture
// saved with another mode is better than none.
void keepOwnerAndMode(int descriptor, const struct stat &old) {
    // The owner first: changing it may clear the set-id bits of the mode.
    const bool owner = ::fchown(descriptor, old.st_uid, old.st_gid) == 0;
    const mode_t mode = owner ? old.st_mode & 07777 : old.st_mode & 0777;
    ::fchmod(descriptor, mode);
}

// A rename survives a power failure only when the folder is flushed as well. Some file systems cannot; the file itself
// is complete either way.
void flushFolder(const std::filesystem::path &folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        ::fsync(descriptor);
        ::close(descriptor);
    }
}

struct Place {
    std::filesystem::path path;
    std::filesystem::path folder;
    bool exists = false;
    struct stat old {};
};

std::optional<ReplaceFailure> replaceBy(Temporary &temporary, const Place &place,
                                        const std::function<bool(QIODevice &)> &write) {
    if (temporary.descriptor() < 0) {
        return failure("cannot write in the folder", temporary.error());
    }
    if (auto failed = fill(temporary.descriptor(), write)) {
        return failed;
    }
    if (place.exists) {
        keepOwnerAndMode(temporary.descriptor(), place.old);
    }
    if (TaskControl::isCurrentCancelled()) {
        return failure("stopped");
    }
    if (!temporary.become(place.path)) {
        ReplaceFailure failed = failure("cannot replace the file", temporary.error());
        if (!place.exists && failed.kind == Kind::FolderReadOnly) {
            failed.kind = Kind::NameRefused; // the folder has just taken a file, if without this name
        }
        return failed;
    }
    flushFolder(place.folder);
    return std::nullopt;
}

} // namespace

std::optional<ReplaceFailure> replaceFile(const QString &path, const std::function<bool(QIODevice &)> &write) {
    Place place;
    place.path = linkTarget(fileNameBytes(path).toStdString());
    if (place.path.empty()) {
        return failure("a link without end, or no name");
    }
    place.exists = ::stat(place.path.c_str(), &place.old) == 0;
    if (!place.exists && errno != ENOENT) {
        return failure("cannot look at the target", errno);
    }
    if (place.exists && !S_ISREG(place.old.st_mode)) {
        return failure("the target is not a plain file");
    }
    if (place.exists && ::faccessat(AT_FDCWD, place.path.c_str(), W_OK, AT_EACCESS) != 0) {
        return ReplaceFailure{Kind::FileReadOnly, failure("the file may not be written", errno).text};
    }
    place.folder = place.path.has_parent_path() ? place.path.parent_path() : ".";
    removeLeftovers(place.folder);
    // Some file systems cannot have files without a name, and giving them one takes /proc.
    if (::access(descriptorFolder, X_OK) == 0) {
        Temporary nameless(place.folder, Temporary::Way::WithoutName);
        if (nameless.descriptor() >= 0) {
            auto failed = replaceBy(nameless, place, write);
            const bool cannotBeNamed = nameless.error() == ENOENT || nameless.error() == EXDEV ||
                                       nameless.error() == EOPNOTSUPP || nameless.error() == EPERM;
            if (!failed || !cannotBeNamed) {
                return failed;
            }
        }
    }
    Temporary named(place.folder, Temporary::Way::WithName);
    return replaceBy(named, place, write);
}

void removeUnfinished() {
    for (const std::filesystem::path &noted : temporariesIn(notesFolder())) {
        std::error_code none;
        const std::filesystem::path name = std::filesystem::read_symlink(noted, none);
        if (name.filename() != noted.filename() || removeLeftover(name)) {
            ::unlink(noted.c_str());
        }
    }
}

} // namespace lumora
