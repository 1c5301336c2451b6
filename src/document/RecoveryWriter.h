// The thread behind Recovery: writes the copies of one photo and moves those that were thrown away. Outlives its photo
// by the moment that this takes.
#pragma once

#include "document/RecoveryCopy.h"
#include "document/RecoveryFolder.h"

#include <QHash>
#include <QString>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace lumora {

/// All is called by one thread, the window's, but for the destructor. What cannot be written is left out.
class RecoveryWriter {
  public:
    explicit RecoveryWriter(const QString &parentFolder);
    /// Finishes with what was thrown away, which may take as long as writing a photo does (see isDiscarding), and
    /// removes the copy of now unless it stays behind.
    ~RecoveryWriter();
    RecoveryWriter(const RecoveryWriter &) = delete;
    RecoveryWriter &operator=(const RecoveryWriter &) = delete;

    /// The photo whose copy is to be on the disk, of several the newest; with a null picture: none.
    void want(const KeptPhoto &photo);
    /// The photo was thrown away: its copy goes to the DiscardedPhotos, and is written before where that is not done.
    void discard(const KeptPhoto &photo);
    /// The picture with that cache key was read from that file of the DiscardedPhotos, so it needs no second one.
    void noteDiscarded(qint64 key, const QString &path);
    /// Returns when the copy on the disk is of that photo.
    void keepNow(const KeptPhoto &photo);
    /// Takes that folder over, whose copy is of the picture with that key.
    void adopt(std::unique_ptr<RecoveryFolder> folder, qint64 key);
    /// Whether the copy of now outlives this object.
    void setStaysBehind(bool stays) { m_staysBehind = stays; }
    bool isDiscarding();

  private:
    void wake();
    void work(const std::stop_token &stop);
    void store(const KeptPhoto &photo, const std::stop_token &stop);
    void moveToDiscarded(const KeptPhoto &photo);
    QString discardedFile(qint64 key);
    void stopUselessWriting();
    void waitForThread(std::unique_lock<std::mutex> &lock);

    const QString m_parentFolder;
    bool m_staysBehind = false;

    std::mutex m_mutex;
    std::condition_variable_any m_toDo;
    std::condition_variable m_done;
    std::optional<KeptPhoto> m_waiting;      ///< what the thread does next; a null picture: remove the copy
    std::deque<KeptPhoto> m_discarded;       ///< before that
    QHash<qint64, QString> m_discardedFiles; ///< by the cache key of the picture
    bool m_busy = false;
    bool m_discarding = false;      ///< what it is busy with was thrown away
    qint64 m_busyKey = 0;           ///< of the picture being written
    std::stop_source m_stopWriting; ///< of the picture being written

    // The thread's while it is busy, this object's otherwise.
    std::unique_ptr<RecoveryFolder> m_folder;
    qint64 m_keptKey = 0; ///< of the picture whose copy is written
    std::jthread m_thread;
};

} // namespace lumora
