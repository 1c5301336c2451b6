// Keeps a recovery copy of the photo while it has changes that are not saved or is in no file, so that neither a crash
// nor a power cut nor a closed session costs them. Made by the main window for its photo.
#pragma once

#include "document/PhotoDocument.h"
#include "document/RecoveryFolder.h"

#include <QObject>
#include <memory>

namespace lumora {

class RecoveryWriter;

/// After every change of an unsaved photo its copy is written by a thread of its own; the pixels are shared, and of
/// several changes only the newest waits. The copy is removed when the photo is saved and with this object; it stays
/// when the program ends while the photo is unsaved, and is then brought up to date first.
class Recovery : public QObject {
    Q_OBJECT

  public:
    /// `parentFolder` as RecoveryFolder takes it; empty: no copies are kept.
    Recovery(PhotoDocument &photo, const QString &parentFolder, QObject *parent = nullptr);
    /// Does not wait until what was thrown away is kept; finishBesides() does.
    ~Recovery() override;

    /// Returns when the copy on the disk is the photo of now. Without unsaved changes, or where the disk refuses it,
    /// nothing happens.
    void keepNow();
    /// Takes over a copy that an earlier program left and that has just become the photo: from now on it is this
    /// program's own, so that at no moment there is none.
    void adopt(std::unique_ptr<RecoveryFolder> folder);

    /// The photo was thrown away: the thread moves its copy to the DiscardedPhotos, and writes it before where that is
    /// not done yet; if need be after the end of this object, in a thread that the application waits for.
    void keepDiscarded(const KeptPhoto &photo);
    /// The photo of now was read from that file of the DiscardedPhotos: thrown away once more, it needs no second one.
    void broughtBack(const QString &path);

    const QString &parentFolder() const { return m_parentFolder; }

  private:
    void photoChanged(PhotoChanges what);

    PhotoDocument &m_photo;
    const QString m_parentFolder;
    std::unique_ptr<RecoveryWriter> m_writer;
};

} // namespace lumora
