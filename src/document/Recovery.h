// Keeps a recovery copy of the photo while it has changes that are not saved, so that neither a crash nor a power cut
// nor a closed session costs them. Made by the main window for its photo.
#pragma once

#include "document/PhotoDocument.h"
#include "document/RecoveryFolder.h"

#include <QImage>
#include <QObject>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace lumora {

/// After every change of an unsaved photo its copy is written by a thread of its own; the pixels are shared, and of
/// several changes only the newest waits. The copy is removed when the photo is saved and with this object; it stays
/// when the program ends while the photo is unsaved, and is then brought up to date first.
class Recovery : public QObject {
    Q_OBJECT

  public:
    /// `parentFolder` as RecoveryFolder takes it; empty: no copies are kept.
    Recovery(PhotoDocument &photo, const QString &parentFolder, QObject *parent = nullptr);
    ~Recovery() override;

    /// Returns when the copy on the disk is the photo of now. Without unsaved changes, or where the disk refuses it,
    /// nothing happens.
    void keepNow();
    /// Takes over a copy that an earlier program left and that has just become the photo: from now on it is this
    /// program's own, so that at no moment there is none.
    void adopt(std::unique_ptr<RecoveryFolder> folder);

    const QString &parentFolder() const { return m_parentFolder; }

  private:
    void photoChanged(PhotoChanges what);
    void want(const QImage &picture);
    void work(const std::stop_token &stop);
    void store(const QImage &picture, const std::stop_token &stop);
    void waitForThread(std::unique_lock<std::mutex> &lock);

    PhotoDocument &m_photo;
    const QString m_parentFolder;
    bool m_staysBehind = false; ///< the program ends with unsaved changes

    std::mutex m_mutex;
    std::condition_variable_any m_toDo;
    std::condition_variable m_done;
    std::optional<QImage> m_waiting; ///< what the thread does next; a null picture: remove the copy
    bool m_busy = false;
    qint64 m_busyKey = 0;           ///< of the picture being written
    std::stop_source m_stopWriting; ///< of the picture being written

    // The thread's while it is busy, this object's otherwise.
    std::unique_ptr<RecoveryFolder> m_folder;
    qint64 m_keptKey = 0; ///< of the picture whose copy is written
    std::jthread m_thread;
};

} // namespace lumora
