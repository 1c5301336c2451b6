#include "document/RecoveryWriter.h"

#include "document/DiscardedPhotos.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace lumora {

RecoveryWriter::RecoveryWriter(const QString &parentFolder)
    : m_parentFolder(parentFolder), m_folder(std::make_unique<RecoveryFolder>(parentFolder)) {}

RecoveryWriter::~RecoveryWriter() {
    if (m_thread.joinable()) {
        m_thread.request_stop();
        {
            const std::lock_guard lock(m_mutex);
            stopUselessWriting();
        }
        m_thread.join();
    }
    if (!m_staysBehind) {
        m_folder->clear();
    }
}

void RecoveryWriter::want(const KeptPhoto &photo) {
    {
        const std::lock_guard lock(m_mutex);
        m_waiting = photo;
        if (photo.picture.isNull()) {
            stopUselessWriting();
        }
    }
    wake();
}

void RecoveryWriter::discard(const KeptPhoto &photo) {
    {
        const std::lock_guard lock(m_mutex);
        m_discarded.push_back(photo);
    }
    wake();
}

void RecoveryWriter::noteDiscarded(qint64 key, const QString &path) {
    const std::lock_guard lock(m_mutex);
    m_discardedFiles[key] = path;
}

bool RecoveryWriter::isDiscarding() {
    const std::lock_guard lock(m_mutex);
    return m_discarding || !m_discarded.empty();
}

/// The copy that is being written is out of date, unless it is of a photo that was just thrown away.
void RecoveryWriter::stopUselessWriting() {
    const auto isWritten = [this](const KeptPhoto &photo) { return photo.picture.cacheKey() == m_busyKey; };
    if (std::none_of(m_discarded.begin(), m_discarded.end(), isWritten)) {
        m_stopWriting.request_stop();
    }
}

void RecoveryWriter::wake() {
    if (!m_thread.joinable()) {
        try {
            m_thread = std::jthread([this](const std::stop_token &stop) { work(stop); });
        } catch (const std::system_error &) {
            return; // the system refuses one now; the next change asks again
        }
    }
    m_toDo.notify_one();
}

void RecoveryWriter::work(const std::stop_token &stop) {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_toDo.wait(lock, stop, [this] { return m_waiting.has_value() || !m_discarded.empty(); });
        if (m_discarded.empty() && (stop.stop_requested() || !m_waiting)) {
            return;
        }
        m_busy = true;
        if (!m_discarded.empty()) {
            const KeptPhoto photo = m_discarded.front();
            m_discarded.pop_front();
            m_busyKey = 0;
            m_discarding = true;
            lock.unlock();
            moveToDiscarded(photo);
        } else {
            m_stopWriting = std::stop_source();
            const KeptPhoto photo = *std::exchange(m_waiting, std::nullopt);
            m_busyKey = photo.picture.cacheKey();
            const std::stop_token stopWriting = m_stopWriting.get_token();
            lock.unlock();
            store(photo, stopWriting);
        }
        lock.lock();
        m_busy = m_discarding = false;
        m_done.notify_all();
    }
}

void RecoveryWriter::store(const KeptPhoto &photo, const std::stop_token &stop) {
    if (photo.picture.isNull()) {
        m_folder->clear();
        m_keptKey = 0;
    } else if (photo.picture.cacheKey() != m_keptKey && m_folder->write(photo, stop)) {
        m_keptKey = photo.picture.cacheKey();
    }
}

void RecoveryWriter::moveToDiscarded(const KeptPhoto &photo) {
    const qint64 key = photo.picture.cacheKey();
    DiscardedPhotos discarded(m_parentFolder);
    if (const QString before = discardedFile(key); !before.isEmpty() && discarded.renew(before)) {
        return;
    }
    QString path;
    if (key == m_keptKey) {
        path = discarded.take(*m_folder);
        m_keptKey = path.isEmpty() ? m_keptKey : 0;
    } else {
        RecoveryFolder folder(m_parentFolder);
        if (folder.write(photo)) {
            path = discarded.take(folder);
        }
        folder.clear(); // of a full disk
    }
    if (!path.isEmpty()) {
        noteDiscarded(key, path);
    }
}

QString RecoveryWriter::discardedFile(qint64 key) {
    const std::lock_guard lock(m_mutex);
    return m_discardedFiles.value(key);
}

/// Nothing waits and the thread is idle afterwards: it does not wake while the lock is held.
void RecoveryWriter::waitForThread(std::unique_lock<std::mutex> &lock) {
    m_waiting.reset();
    m_done.wait(lock, [this] { return !m_busy; });
}

void RecoveryWriter::keepNow(const KeptPhoto &photo) {
    std::unique_lock lock(m_mutex);
    if (m_busyKey != photo.picture.cacheKey()) {
        m_stopWriting.request_stop(); // what it writes is out of date
    }
    waitForThread(lock);
    store(photo, {});
}

void RecoveryWriter::adopt(std::unique_ptr<RecoveryFolder> folder, qint64 key) {
    std::unique_lock lock(m_mutex);
    m_stopWriting.request_stop();
    waitForThread(lock);
    m_folder->clear();
    m_folder = std::move(folder);
    m_keptKey = key;
}

} // namespace lumora
