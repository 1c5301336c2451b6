#include "base/IniFiles.h"

#include "base/IniText.h"
#include "base/ReplaceFile.h"
#include "base/basMisc.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <algorithm>
#include <array>
#include <atomic>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <mutex>
#include <new>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

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

IniFileStamp stampOf(const QByteArray &file) {
    struct stat status = {};
    if (::stat(file.constData(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > largestFile) {
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
bool canBeReplaced(const QByteArray &file) {
    const auto may = [](const QByteArray &path, int what) { return ::access(path.constData(), what) == 0; };
    const auto folderOf = [](const QByteArray &path) {
        return path.left(std::max<qsizetype>(path.lastIndexOf('/'), 1));
    };
    struct stat status = {};
    if (::lstat(file.constData(), &status) != 0) {
        return may(folderOf(file), W_OK | X_OK);
    }
    QByteArray target = file;
    if (S_ISLNK(status.st_mode)) {
        char real[PATH_MAX];
        if (::realpath(file.constData(), real) == nullptr || ::stat(real, &status) != 0) {
            return may(folderOf(file), W_OK | X_OK); // it leads nowhere
        }
        target = real;
    }
    return may(folderOf(target), W_OK | X_OK) && S_ISREG(status.st_mode) && may(target, R_OK | W_OK);
}

/// The user's own copy of a file whose folder is read-only.
QString userCopy(const QString &file) {
    return usersConfigurationFolder() + '/' + QFileInfo(file).fileName();
}

} // namespace

/// What the system says about a file, its user's copy and the administrator's. Only system calls: a thread asks them
/// while the program ends.
struct IniFileState {
    struct Paths {
        QByteArray own, users, site; ///< the last two are empty where there is none
    };
    IniFileStamp own, users, site;
    bool isShared = false; ///< cannot be written: the user's copy overrides it

    static IniFileState of(const Paths &paths) {
        IniFileState state;
        state.own = stampOf(paths.own);
        state.isShared = !canBeReplaced(paths.own);
        state.users = !state.isShared || paths.users.isEmpty() ? IniFileStamp()
                      : paths.users == paths.own               ? state.own
                                                               : stampOf(paths.users);
        state.site = paths.site.isEmpty() ? IniFileStamp() : stampOf(paths.site);
        return state;
    }
    bool operator==(const IniFileState &) const = default;
};

/// A look at all files by a thread of its own: a home on a server may take long to answer.
struct IniFileLook {
    std::vector<IniFileState::Paths> paths;
    std::vector<IniFileState> states; ///< only once it is done
    std::atomic<bool> isDone = false;

    void look() {
        try {
            for (const IniFileState::Paths &each : paths) {
                states.push_back(IniFileState::of(each));
            }
        } catch (const std::bad_alloc &) { // the next look will see the others
        }
        isDone = true;
    }
};

namespace {

std::atomic<quint64> writesSoFar; // by all parts of the program, each of which has files of its own

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
        IniFileState state;
    };

    std::chrono::milliseconds betweenLooks{};
    UsersCopies copies = UsersCopies::Read;
    Clock::time_point nextLook;
    bool isLookDue = true;                  ///< at the next read, which waits for it
    quint64 writesSeen = 0;                 ///< of writesSoFar
    std::shared_ptr<IniFileLook> lookAside; ///< what is under way
    QList<QString> lookedAside;             ///< whose files these are
    QHash<QString, File> files;
    quint64 revision = 0;
    int looks = 0;

    /// Reads the file again when it differs from the one in memory.
    void update(Copy &copy, const QString &path, const IniFileStamp &stamp) {
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
        auto text = std::make_shared<IniText>(bytes);
        if (isKnown && stampOf(QFile::encodeName(path)) == stamp) { // not changed while it was read
            all[path] = std::make_shared<const Parsed>(Parsed{stamp, *text});
        }
        return text;
    }

    IniFileState::Paths pathsOf(const QString &path) {
        return {QFile::encodeName(path), copies == UsersCopies::Read ? QFile::encodeName(userCopy(path)) : QByteArray(),
                QFile::encodeName(files[path].sitePath)};
    }

    const File &lookNow(const QString &path) { return take(path, IniFileState::of(pathsOf(path))); }

    const File &take(const QString &path, const IniFileState &state) {
        ++looks;
        File &file = files[path];
        update(file.own, path, state.own);
        const QString users = userCopy(path);
        if (users == path) {
            file.users = file.own;
        } else {
            update(file.users, users, state.users);
        }
        if (!file.sitePath.isEmpty()) {
            update(file.site, file.sitePath, state.site);
        }
        revision += state.isShared != file.state.isShared ? 1 : 0;
        file.state = state;
        return file;
    }

    void lookAtAll() {
        writesSeen = writesSoFar;
        lookAside.reset();
        for (const QString &path : files.keys()) {
            lookNow(path);
        }
        isLookDue = false;
        nextLook = Clock::now() + betweenLooks;
    }

    void startLookAside() {
        lookAside = std::make_shared<IniFileLook>();
        lookedAside = files.keys();
        for (const QString &path : lookedAside) {
            lookAside->paths.push_back(pathsOf(path));
        }
        try {
            // Nothing waits for it, least of all the end of the program.
            std::thread([look = lookAside] { look->look(); }).detach();
        } catch (const std::exception &) { // no thread is to be had
            lookAtAll();
        }
    }

    void takeLookAside() {
        const auto done = std::exchange(lookAside, nullptr);
        for (size_t i = 0; i < done->states.size(); ++i) {
            take(lookedAside[static_cast<qsizetype>(i)], done->states[i]);
        }
        nextLook = Clock::now() + betweenLooks;
    }

    void lookWhenDue() {
        if (isLookDue || betweenLooks.count() == 0 || writesSeen != writesSoFar) {
            lookAtAll();
        } else if (lookAside) {
            if (lookAside->isDone) {
                takeLookAside();
            }
        } else if (Clock::now() >= nextLook) {
            startLookAside();
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

IniFiles::IniFiles(std::chrono::milliseconds betweenLooks, UsersCopies copies) : d(std::make_unique<Private>()) {
    d->betweenLooks = betweenLooks;
    d->copies = copies;
}
IniFiles::~IniFiles() = default;

quint64 IniFiles::revision() {
    d->lookWhenDue();
    return d->revision;
}

void IniFiles::lookAgain() {
    d->isLookDue = true;
}

int IniFiles::looks() const {
    return d->looks;
}

QString IniFiles::ReadIniValue(const QString &file, const QString &section, const QString &key,
                               const QString &defaultValue) {
    const Private::File &found = d->current(file);
    const auto order = found.state.isShared
                           ? std::array{&found.users, &found.site, &found.own}
                           : std::array{&found.own, &found.site, static_cast<const Private::Copy *>(nullptr)};
    for (const Private::Copy *from : order) {
        QString value = from == nullptr ? QString() : valueIn(*from, section, key);
        if (!value.isNull()) {
            return value;
        }
    }
    return defaultValue;
}

void IniFiles::addSiteFile(const QString &file, const QString &siteFile) {
    d->files[file].sitePath = siteFile;
    d->lookAside.reset(); // does not know it
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
    d->lookAside.reset(); // what it saw may be older
    const bool toUser = d->lookNow(file).state.isShared;
    const QString target = toUser ? userCopy(file) : file;
    if (toUser) {
        QDir().mkpath(QFileInfo(target).path());
    }
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
        const bool isCurrent = d->writesSeen == writesSoFar++;
        d->lookNow(file);
        if (isCurrent) {
            d->writesSeen = writesSoFar;
        }
    }
}

} // namespace lumora
