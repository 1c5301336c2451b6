// Where a running program keeps the recovery copy of its photo: a private folder that outlives a crash and a restart
// of the computer. Recovery writes into it; the next program that starts finds what was left behind.
#pragma once

#include "document/RecoveryCopy.h"

#include <QImage>
#include <QString>
#include <memory>
#include <stop_token>
#include <string>

namespace lumora {

/// One folder (mode 0700) below `parent` for each program that has a photo to keep, made with the first copy and
/// locked as long as the object lives, so that programs do not disturb each other. Links and what belongs to other
/// users are never followed. One thread at a time.
class RecoveryFolder {
  public:
    explicit RecoveryFolder(const QString &parent);
    /// Releases the lock; a copy stays where it is.
    ~RecoveryFolder();
    RecoveryFolder(const RecoveryFolder &) = delete;
    RecoveryFolder &operator=(const RecoveryFolder &) = delete;

    /// Replaces the last copy by one of the photo, whole or not at all, flushed to the disk; before it is flushed,
    /// both are there. False, and the last one stays, when the disk is full (half of what is free is left to others),
    /// the folder cannot be made or a stop is asked for.
    bool write(const KeptPhoto &photo, const std::stop_token &stop = {});
    /// Moves the flushed copy into that folder of the same file system, under that name, and removes its own folder.
    /// False, and nothing changed, when there is none or the disk refuses it.
    bool moveCopy(int folder, const std::string &name);
    /// Removes the copy and the folder; the next write makes them again.
    void clear();

    /// What programs left that did not end as they should: the newest copy below `parent` that no running program
    /// holds, read into `photo`; null when there is none. Damaged ones are put aside on the way (their folders renamed
    /// to "damaged-..."), `damaged` gets how many; older ones stay for the next time. Files that were just being
    /// replaced are put in order (removeUnfinished).
    static std::unique_ptr<RecoveryFolder> findNewest(const QString &parent, KeptPhoto &photo, int *damaged = nullptr);

    /// Whether something lies there that may be such a copy, or that of a running program. Reads no file.
    static bool mayHaveCopies(const QString &parent);

    /// The folder below which the program itself looks: where the user's state is kept, not among temporary files. What
    /// an earlier version kept among the user's data is moved there.
    static QString usualParent();

  private:
    bool make();
    bool putAside();
    bool enter(int parent, const std::string &name);
    CopyRead readCopy(KeptPhoto &photo) const;
    CopyRead readFile(const char *name, KeptPhoto &photo) const;
    std::pair<qint64, qint64> lastWritten() const;
    void close();

    const QString m_parentPath;
    int m_parent = -1;
    int m_folder = -1;
    int m_lock = -1; ///< a file in it, locked: what others see as in use
    std::string m_name;
};

} // namespace lumora
