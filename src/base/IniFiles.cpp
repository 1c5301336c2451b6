#include "base/IniFiles.h"

#include "base/IniText.h"
#include "base/ReplaceFile.h"
#include "base/basMisc.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <array>
#include <ctime>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

namespace lumora {

/// Identifies one state of a file.
struct IniFileStamp {
    bool readable = false; ///< a regular file of a sensible size
    quint64 device = 0, inode = 0;
    qint64 size = 0, modified = 0, changed = 0; ///< bytes, nanoseconds

    bool operator==(const IniFileStamp &) const = default;
};

namespace {

constexpr qsizetype longestValue = 900;            // UTF-16 units
constexpr qint64 largestFile = 64LL * 1024 * 1024; // bytes; a larger file is not a settings file
constexpr qint64 clockGrain = 10'000'000;          // nanoseconds between two ticks of a file system's clock

qint64 nanoseconds(const timespec &time) {
    return qint64{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

IniFileStamp stampOf(const QString &file) {
    struct stat status = {};
    if (::stat(QFile::encodeName(file).constData(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size > largestFile) {
        return {};
    }
    return {
        true, status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim), nanoseconds(status.st_ctim)};
}

/// Whether the stamp of a file read just now would detect the next change: not within one tick of the clock.
bool isSettled(const IniFileStamp &stamp) {
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    const qint64 age = nanoseconds(now) - stamp.changed;
    return age < 0 || age > clockGrain;
}

/// Whether the file can be replaced: the file, or its folder where it does not exist, is writable.
bool canBeReplaced(const QString &file) {
    const QFileInfo info(file);
    const QFileInfo target(info.isSymLink() && info.exists() ? info.canonicalFilePath() : file);
    const auto may = [](const QString &path, int what) {
        return ::access(QFile::encodeName(path).constData(), what) == 0;
    };
    return may(target.path(), W_OK | X_OK) &&
           (!target.exists() || (target.isFile() && may(target.filePath(), R_OK | W_OK)));
}

/// The user's own copy of a file whose folder is read-only.
QString userCopy(const QString &file) {
    return usersConfigurationFolder() + '/' + QFileInfo(file).fileName();
}

} // namespace

/// The content of one file in memory.
struct IniFileCopy {
    IniFileStamp stamp;
    bool settled = false;
    std::shared_ptr<IniText> text; ///< empty when the file exists but cannot be read
};

struct IniFiles::Private {
    using Clock = std::chrono::steady_clock;
    using Copy = IniFileCopy;

    /// One file in memory.
    struct File {
        Copy own;   ///< beside the program
        Copy users; ///< in the user's configuration folder
        Copy site;  ///< the administrator's, for all users
        QString sitePath;
        bool isShared = false; ///< cannot be written: the user's copy overrides it
    };

    std::chrono::milliseconds betweenLooks{};
    Clock::time_point nextLook;
    QHash<QString, File> files;
    quint64 revision = 0;
    int looks = 0;

    /// Reads the file again when it differs from the one in memory.
    void update(Copy &copy, const QString &path) {
        const IniFileStamp stamp = stampOf(path);
        if (copy.text && copy.settled && copy.stamp == stamp) {
            return;
        }
        const auto before = std::move(copy.text);
        copy = {stamp, isSettled(stamp), parsed(path, stamp)};
        const bool same = before && copy.text ? before->toBytes() == copy.text->toBytes() : before == copy.text;
        revision += same ? 0 : 1;
    }

    static std::shared_ptr<IniText> parsed(const QString &path, const IniFileStamp &stamp) {
        // Each part of the program that reads the settings has files of its own, and the texts are a large file.
        struct Parsed {
            IniFileStamp stamp;
            IniText text;
        };
        static std::mutex mutex;
        static QHash<QString, std::shared_ptr<const Parsed>> all;
        const bool isKnown = stamp.readable && isSettled(stamp);
        const std::scoped_lock lock(mutex);
        if (const auto known = all.value(path); isKnown && known && known->stamp == stamp) {
            return std::make_shared<IniText>(known->text);
        }
        QByteArray bytes;
        if (stamp.readable) {
            QFile source(path);
            if (!source.open(QIODevice::ReadOnly)) {
                return nullptr;
            }
            bytes = source.readAll();
            if (source.error() != QFileDevice::NoError) {
                return nullptr;
            }
        }
        const auto text = std::make_shared<IniText>(bytes);
        if (isKnown && stampOf(path) == stamp) { // not changed while it was read
            all[path] = std::make_shared<const Parsed>(Parsed{stamp, *text});
        }
        return text;
    }

    const File &lookNow(const QString &path) {
        ++looks;
        File &file = files[path];
        update(file.own, path);
        update(file.users, userCopy(path));
        if (!file.sitePath.isEmpty()) {
            update(file.site, file.sitePath);
        }
        const bool isShared = !canBeReplaced(path);
        revision += isShared != file.isShared ? 1 : 0;
        file.isShared = isShared;
        return file;
    }

    void lookWhenDue() {
        if (Clock::now() >= nextLook) {
            for (const QString &path : files.keys()) {
                lookNow(path);
            }
            nextLook = Clock::now() + betweenLooks;
        }
    }

    const File &current(const QString &path) {
        lookWhenDue();
        const auto found = files.constFind(path);
        return found == files.constEnd() ? lookNow(path) : *found;
    }
};

namespace {

/// A value of that file, not null but at most 900 characters; null when the file has none.
QString valueIn(const IniFileCopy &file, const QString &section, const QString &key) {
    std::optional<QString> value = file.text ? file.text->value(section, key) : std::nullopt;
    if (!value) {
        return {};
    }
    if (value->size() > longestValue) {
        value->truncate(value->at(longestValue - 1).isHighSurrogate() ? longestValue - 1 : longestValue);
    }
    return value->isNull() ? QString("") : *value;
}

} // namespace

IniFiles::IniFiles(std::chrono::milliseconds betweenLooks) : d(std::make_unique<Private>()) {
    d->betweenLooks = betweenLooks;
}
IniFiles::~IniFiles() = default;

quint64 IniFiles::revision() {
    d->lookWhenDue();
    return d->revision;
}

void IniFiles::lookAgain() {
    d->nextLook = {};
}

int IniFiles::looks() const {
    return d->looks;
}

QString IniFiles::ReadIniValue(const QString &file, const QString &section, const QString &key,
                               const QString &defaultValue) {
    const Private::File &found = d->current(file);
    const auto order = found.isShared
                           ? std::array{&found.users, &found.site, &found.own}
                           : std::array{&found.own, &found.site, static_cast<const Private::Copy *>(nullptr)};
    for (const Private::Copy *from : order) {
        const QString value = from == nullptr ? QString() : valueIn(*from, section, key);
        if (!value.isNull()) {
            return value;
        }
    }
    return defaultValue;
}

void IniFiles::addSiteFile(const QString &file, const QString &siteFile) {
    d->files[file].sitePath = siteFile;
    d->lookNow(file);
}

QString IniFiles::siteValue(const QString &file, const QString &section, const QString &key) {
    return valueIn(d->current(file).site, section, key);
}

bool IniFiles::WriteIniValue(const QString &file, const QString &section, const QString &key, const QString &value) {
    writeValues(file, {{section, key, value}});
    return true;
}

void IniFiles::writeValues(const QString &file, const QList<Value> &values) {
    const bool toUser = !canBeReplaced(file);
    const QString target = toUser ? userCopy(file) : file;
    if (toUser) {
        QDir().mkpath(QFileInfo(target).path());
    }
    d->lookNow(file);
    const Private::Copy &copy = toUser ? d->files[file].users : d->files[file].own;
    // A file that exists but cannot be read is not written: that would lose all its other values.
    if (!copy.text || (!copy.stamp.readable && QFileInfo::exists(target))) {
        return;
    }
    IniText text = *copy.text;
    bool isChanged = false;
    for (const Value &value : values) {
        if (IniText::canName(value.section, value.key) && text.setValue(value.section, value.key, value.text)) {
            isChanged = true;
        }
    }
    if (isChanged) {
        const QByteArray bytes = text.toBytes();
        replaceFile(target, [&](QIODevice &replacement) { return replacement.write(bytes) == bytes.size(); });
        d->lookNow(file);
    }
}

} // namespace lumora
