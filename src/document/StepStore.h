// Where the pixels of undo steps are kept: in memory, and beyond a budget in temporary files that one background thread
// writes. Used by PhotoHistory only, from the user-interface thread.
#pragma once

#include "document/SpillFolder.h"

#include <QImage>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace lumora {

class StepStore;

/// The pixels of one step, kept by a StepStore, which must outlive them. Freed with the last pointer.
struct StoredPixels {
    explicit StoredPixels(StepStore &owner, const QImage &pixels);
    ~StoredPixels();
    StoredPixels(const StoredPixels &) = delete;
    StoredPixels &operator=(const StoredPixels &) = delete;

    StepStore &store;
    const QSize size;
    const bool opaque;
    const qint64 bytes;   ///< in memory
    bool spilled = false; ///< on its way to the disk or there; only the user-interface thread looks at it

  private:
    friend class StepStore;
    // Guarded by the store's mutex.
    QImage m_picture;   ///< null when only the file has the pixels
    std::string m_file; ///< empty while there is none
    qint64 m_fileBytes = 0;
};

class StepStore {
  public:
    using Pixels = std::shared_ptr<StoredPixels>;
    enum class Reading { Done, Lost, NotNow };

    /// Budgets in bytes; a negative disk budget means the smaller of 8 GB and half of what is free. The thread makes
    /// the folder where it is missing; the temporary folder takes its place where it is empty or cannot be written.
    StepStore(qint64 memoryBudget, qint64 diskBudget, const QString &wantedFolder);
    ~StepStore();
    StepStore(const StepStore &) = delete;
    StepStore &operator=(const StepStore &) = delete;

    /// Takes a picture in; the pixels are shared, not copied.
    Pixels keep(const QImage &picture) { return std::make_shared<StoredPixels>(*this, picture); }
    /// Returns the pixels, from the file when they are no longer in memory. Lost: the file is missing or
    /// damaged. NotNow: memory is refused, or the system refuses to open or read the file.
    Reading read(const Pixels &pixels, QImage &picture) const;

    /// Has the thread write these pixels to the disk; until that is done they stay in memory.
    void spill(const Pixels &pixels);
    /// True once after the disk was full or its budget spent; what was waiting to be written is then not spilled.
    bool takeFailure();
    /// Waits until the thread has finished with one picture or failed; where the system refuses the thread, writes one
    /// here. False when there is nothing to write.
    bool waitForWriter();
    /// Is more in memory than the budget allows? One picture alone is always allowed.
    bool isOverBudget() const;

    qint64 memoryBudget() const { return m_memoryBudget; }
    qint64 memoryBytes() const;
    qint64 diskBytes() const;

  private:
    friend struct StoredPixels;
    bool begin();
    void work(const std::stop_token &stop);
    void writeFirst(std::unique_lock<std::mutex> &lock, const std::stop_token &stop);
    bool hasFolder();
    qint64 write(const std::string &name, const QImage &picture, bool compress, qint64 limit,
                 const std::stop_token &stop);
    void finish(const Pixels &pixels, const std::string &name, qint64 written);

    const qint64 m_memoryBudget;
    const QString m_wantedFolder;
    std::optional<SpillFolder> m_folder; ///< the thread makes it, before anything has a file
    mutable std::mutex m_mutex;
    std::condition_variable_any m_workToDo;
    std::condition_variable m_workDone;
    qint64 m_diskBudget;
    std::deque<std::weak_ptr<StoredPixels>> m_queue;
    std::vector<std::weak_ptr<StoredPixels>> m_refused;
    bool m_writing = false;
    bool m_failed = false;
    quint64 m_finished = 0; ///< pictures that the thread has finished
    quint64 m_files = 0;    ///< files named so far
    qint64 m_memoryBytes = 0;
    int m_inMemory = 0;
    qint64 m_diskBytes = 0;
    std::jthread m_thread; ///< last: it starts when everything above is constructed and is joined first; see begin()
};

} // namespace lumora
