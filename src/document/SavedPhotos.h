// Which photos were saved lately, across folders: what "My Pictures" of the open dialog shows. A short list in the
// user's own state; the photos themselves stay where they were saved.
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

namespace lumora {

struct SavedPhoto {
    QString path;
    QDateTime when; ///< it was saved last
};

/// A file in the folder of the recovery copies, replaced whole or not at all. Several programs may use it at once. What
/// cannot be written or read is left out without a word.
class SavedPhotos {
  public:
    static constexpr int mostPhotos = 200;

    /// `recoveryFolder` as Installation has it; empty: nothing is noted and nothing found.
    explicit SavedPhotos(const QString &recoveryFolder);

    /// Notes that the photo was saved now. May take as long as the disk does, see replaceFile.
    void add(const QString &path);
    /// The photos that are still there, the newest first.
    QList<SavedPhoto> list() const;

  private:
    QList<SavedPhoto> all() const;

    const QString m_folder;
};

} // namespace lumora
