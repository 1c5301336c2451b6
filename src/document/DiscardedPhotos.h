// Photos whose changes the user has thrown away: kept for a week, so that "No" costs nobody their work. Recovery fills
// the folder, "My Pictures" of the open dialog shows it, the options empty it.
#pragma once

#include "imaging/PictureFile.h"

#include <QDateTime>
#include <QList>
#include <QString>

namespace lumora {

class RecoveryFolder;

struct DiscardedPhoto {
    QString path;
    QDateTime when; ///< it was thrown away
    qint64 bytes = 0;
};

/// A private folder (mode 0700) beside the recovery copies, one file a photo in their format. Several programs may use
/// it at once. What cannot be written or read is left out without a word; links and other users' files are not
/// followed.
class DiscardedPhotos {
  public:
    static constexpr int keptDays = 7;
    static constexpr int mostPhotos = 200;
    static constexpr qint64 mostBytes = qint64{500} << 20;

    /// `recoveryFolder` as Installation has it; empty: nothing is kept and nothing found. `limit` in bytes.
    explicit DiscardedPhotos(const QString &recoveryFolder, qint64 limit = mostBytes);

    /// What can be fetched back, the newest first.
    QList<DiscardedPhoto> list() const;
    bool holds(const QString &path) const;
    /// Whether files here have such names.
    static bool isName(const QString &path);
    /// Reads one, from any thread. Damaged: the file is no longer what was written.
    static PictureRead read(const QString &path);

    /// Moves the copy of that folder here, and removes what is then too old or too much, the oldest first; the newest
    /// stays even where it alone is more than the limit. The path of the copy; empty, and it stays where it is, when
    /// the disk refuses it.
    QString take(RecoveryFolder &from);
    /// The photo of that file was thrown away once more: it is the newest again. False when the file is gone.
    bool renew(const QString &path);
    /// Removes what is too old or too much.
    void sweep();
    /// Removes all.
    void clear();

  private:
    const QString m_folder;
    const qint64 m_limit;
};

} // namespace lumora
