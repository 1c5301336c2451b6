#include "document/Recovery.h"

#include <QGuiApplication>
#include <system_error>
#include <utility>

namespace lumora {

Recovery::Recovery(PhotoDocument &photo, const QString &parentFolder, QObject *parent)
    : QObject(parent), m_photo(photo), m_parentFolder(parentFolder),
      m_folder(std::make_unique<RecoveryFolder>(parentFolder)) {
    if (parentFolder.isEmpty()) {
        return;
    }
    connect(&photo, &PhotoDocument::changed, this, &Recovery::photoChanged);
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] {
        keepNow();
        m_staysBehind = m_photo.PhotoModified();
    });
    // The session may end this program at any time after it has asked.
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &Recovery::keepNow, Qt::DirectConnection);
}

Recovery::~Recovery() {
    if (m_thread.joinable()) {
        m_thread.request_stop();
        {
            const std::lock_guard lock(m_mutex);
            m_stopWriting.request_stop();
        }
        m_thread.join();
    }
    if (!m_staysBehind) {
        m_folder->clear();
    }
}

void Recovery::photoChanged(PhotoChanges what) {
    if (!(what & (PhotoChanges(PhotoChange::Pixels) | PhotoChange::Modified))) {
        return;
    }
    if (!m_photo.PhotoModified()) {
        want(QImage());
    } else if (!m_photo.picCanvas().isNull()) {
        want(m_photo.picCanvas());
    }
}

void Recovery::want(const QImage &picture) {
    {
        const std::lock_guard lock(m_mutex);
        m_waiting = picture;
        if (picture.isNull()) {
            m_stopWriting.request_stop();
        }
    }
    if (!m_thread.joinable()) {
        try {
            m_thread = std::jthread([this](const std::stop_token &stop) { work(stop); });
        } catch (const std::system_error &) {
            return; // the system refuses one now; the next change asks again
        }
    }
    m_toDo.notify_one();
}

void Recovery::work(const std::stop_token &stop) {
    std::unique_lock lock(m_mutex);
    while (m_toDo.wait(lock, stop, [this] { return m_waiting.has_value(); }) && !stop.stop_requested()) {
        m_busy = true;
        m_stopWriting = std::stop_source();
        {
            const QImage picture = *std::exchange(m_waiting, std::nullopt);
            m_busyKey = picture.cacheKey();
            const std::stop_token stopWriting = m_stopWriting.get_token();
            lock.unlock();
            store(picture, stopWriting);
        }
        lock.lock();
        m_busy = false;
        m_done.notify_all();
    }
}

void Recovery::store(const QImage &picture, const std::stop_token &stop) {
    if (picture.isNull()) {
        m_folder->clear();
        m_keptKey = 0;
    } else if (picture.cacheKey() != m_keptKey && m_folder->write(picture, stop)) {
        m_keptKey = picture.cacheKey();
    }
}

/// Nothing waits and the thread is idle afterwards: it does not wake while the lock is held.
void Recovery::waitForThread(std::unique_lock<std::mutex> &lock) {
    m_waiting.reset();
    m_done.wait(lock, [this] { return !m_busy; });
}

void Recovery::keepNow() {
    const QImage &picture = m_photo.picCanvas();
    if (m_parentFolder.isEmpty() || !m_photo.PhotoModified() || picture.isNull()) {
        return;
    }
    std::unique_lock lock(m_mutex);
    if (m_busyKey != picture.cacheKey()) {
        m_stopWriting.request_stop(); // what it writes is out of date
    }
    waitForThread(lock);
    store(picture, {});
}

void Recovery::adopt(std::unique_ptr<RecoveryFolder> folder) {
    std::unique_lock lock(m_mutex);
    m_stopWriting.request_stop();
    waitForThread(lock);
    m_folder->clear();
    m_folder = std::move(folder);
    m_keptKey = m_photo.picCanvas().cacheKey();
}

} // namespace lumora
