#include "base/ReplaceFile.h"

#include "base/TaskControl.h"

#include <QFile>
#include <QRandomGenerator>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace lumora {

namespace {

QString systemError(const char *doing) {
    return QString::fromLatin1("%1: %2").arg(QLatin1String(doing), QString::fromLocal8Bit(std::strerror(errno)));
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

// The temporary file; removed unless it was renamed.
class Temporary {
  public:
    explicit Temporary(const std::filesystem::path &folder) {
        for (int attempt = 0; attempt < 100 && m_descriptor < 0; ++attempt) {
            const quint64 number = QRandomGenerator::system()->generate64();
            m_name = folder / (".lumora-" + std::to_string(number) + ".tmp");
            m_descriptor = ::open(m_name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (m_descriptor < 0 && errno != EEXIST) {
                break;
            }
        }
    }
    Temporary(const Temporary &) = delete;
    Temporary &operator=(const Temporary &) = delete;
    ~Temporary() {
        if (m_descriptor >= 0) {
            ::close(m_descriptor);
            if (!m_renamed) {
                ::unlink(m_name.c_str());
            }
        }
    }

    int descriptor() const { return m_descriptor; }

    bool rename(const std::filesystem::path &to) {
        m_renamed = ::rename(m_name.c_str(), to.c_str()) == 0;
        return m_renamed;
    }

  private:
    std::filesystem::path m_name;
    int m_descriptor = -1;
    bool m_renamed = false;
};

std::optional<QString> fill(int descriptor, const std::function<bool(QIODevice &)> &write) {
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadWrite)) {
        return file.errorString();
    }
    const bool written = write(file);
    if (!file.flush() || file.error() != QFileDevice::NoError) {
        return QStringLiteral("cannot write: %1").arg(file.errorString());
    }
    if (!written) {
        return QStringLiteral("the contents could not be made");
    }
    if (::fsync(descriptor) != 0) {
        return systemError("cannot flush");
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

} // namespace

std::optional<QString> replaceFile(const QString &path, const std::function<bool(QIODevice &)> &write) {
    const std::filesystem::path real = linkTarget(QFile::encodeName(path).toStdString());
    if (real.empty()) {
        return QStringLiteral("a link without end, or no name");
    }
    struct stat old {};
    const bool exists = ::stat(real.c_str(), &old) == 0;
    if (!exists && errno != ENOENT) {
        return systemError("cannot look at the target");
    }
    if (exists && !S_ISREG(old.st_mode)) {
        return QStringLiteral("the target is not a plain file");
    }
    if (exists && ::faccessat(AT_FDCWD, real.c_str(), W_OK, AT_EACCESS) != 0) {
        return systemError("the file may not be written");
    }
    const std::filesystem::path folder = real.has_parent_path() ? real.parent_path() : ".";
    Temporary temporary(folder);
    if (temporary.descriptor() < 0) {
        return systemError("cannot write in the folder");
    }
    if (auto failure = fill(temporary.descriptor(), write)) {
        return failure;
    }
    if (exists) {
        keepOwnerAndMode(temporary.descriptor(), old);
    }
    if (TaskControl::isCurrentCancelled()) {
        return QStringLiteral("stopped");
    }
    if (!temporary.rename(real)) {
        return systemError("cannot replace the file");
    }
    flushFolder(folder);
    return std::nullopt;
}

} // namespace lumora
