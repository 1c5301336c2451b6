#include "base/IniFiles.h"

#include "base/IniText.h"
#include "base/ReplaceFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <ctime>
#include <sys/stat.h>
#include <unistd.h>

namespace lumora {
namespace {

constexpr qsizetype longestValue = 900;            // UTF-16 units
constexpr qint64 largestFile = 64LL * 1024 * 1024; // bytes; what is larger is no settings file
constexpr qint64 clockGrain = 10'000'000;          // nanoseconds between two ticks of a file system's clock

/// What tells one state of a file from another.
struct Stamp {
    bool readable = false; ///< a regular file of a sensible size
    quint64 device = 0, inode = 0;
    qint64 size = 0, modified = 0, changed = 0; ///< bytes, nanoseconds

    bool operator==(const Stamp &) const = default;
};

qint64 nanoseconds(const timespec &time) {
    return qint64{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

Stamp stampOf(const QString &file) {
    struct stat status = {};
    if (::stat(QFile::encodeName(file).constData(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size > largestFile) {
        return {};
    }
    return {
        true, status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim), nanoseconds(status.st_ctim)};
}

/// Whether the stamp of a file read just now would show the very next change: not while the clock stands still.
bool isSettled(const Stamp &stamp) {
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    const qint64 age = nanoseconds(now) - stamp.changed;
    return age < 0 || age > clockGrain;
}

/// Whether a new version of the file can take its place: it, or where it would be, can be written.
bool canBeReplaced(const QString &file) {
    const QFileInfo info(file);
    const QFileInfo target(info.isSymLink() && info.exists() ? info.canonicalFilePath() : file);
    const auto may = [](const QString &path, int what) {
        return ::access(QFile::encodeName(path).constData(), what) == 0;
    };
    return may(target.path(), W_OK | X_OK) &&
           (!target.exists() || (target.isFile() && may(target.filePath(), R_OK | W_OK)));
}

/// The user's own copy of a file whose place cannot be written.
QString userCopy(const QString &file) {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/lumora/" +
           QFileInfo(file).fileName();
}

} // namespace

struct IniFiles::Private {
    struct Cached {
        Stamp stamp;
        bool settled = false;
        std::shared_ptr<IniText> text;
    };
    QHash<QString, Cached> files;

    /// The file's text as it stands now; nothing when it is there but cannot be read.
    std::shared_ptr<IniText> load(const QString &file) {
        Cached &cached = files[file];
        const Stamp stamp = stampOf(file);
        if (cached.text && cached.settled && cached.stamp == stamp) {
            return cached.text;
        }
        QByteArray bytes;
        if (stamp.readable) {
            QFile source(file);
            if (!source.open(QIODevice::ReadOnly)) {
                return nullptr;
            }
            bytes = source.readAll();
            if (source.error() != QFileDevice::NoError) {
                return nullptr;
            }
        }
        cached = {stamp, isSettled(stamp), std::make_shared<IniText>(bytes)};
        return cached.text;
    }
};

IniFiles::IniFiles() : d(std::make_unique<Private>()) {}
IniFiles::~IniFiles() = default;

QString IniFiles::ReadIniValue(const QString &file, const QString &section, const QString &key,
                               const QString &defaultValue) {
    const auto read = [&](const QString &from) {
        const auto text = d->load(from);
        return text ? text->value(section, key) : std::nullopt;
    };
    std::optional<QString> value;
    if (!canBeReplaced(file)) {
        value = read(userCopy(file));
    }
    if (!value) {
        value = read(file);
    }
    if (!value) {
        return defaultValue;
    }
    if (value->size() > longestValue) {
        value->truncate(value->at(longestValue - 1).isHighSurrogate() ? longestValue - 1 : longestValue);
    }
    return *value;
}

bool IniFiles::WriteIniValue(const QString &file, const QString &section, const QString &key, const QString &value) {
    if (!IniText::canName(section, key)) {
        return true;
    }
    QString target = file;
    if (!canBeReplaced(file)) {
        target = userCopy(file);
        QDir().mkpath(QFileInfo(target).path());
    }
    // A file that is there but cannot be read is left alone: writing would cost all its other values.
    const bool unreadable = QFileInfo::exists(target) && !stampOf(target).readable;
    const auto loaded = unreadable ? nullptr : d->load(target);
    if (!loaded) {
        return true;
    }
    IniText changed = *loaded;
    if (changed.setValue(section, key, value)) {
        const QByteArray bytes = changed.toBytes();
        replaceFile(target, [&](QIODevice &replacement) { return replacement.write(bytes) == bytes.size(); });
        d->files.remove(target);
    }
    return true;
}

} // namespace lumora
