#include "document/StepStore.h"

#include "base/basMisc.h"
#include "document/CompressedPicture.h"
#include "imaging/Picture.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <new>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace lumora {

namespace {

constexpr qint64 largestDiskBudget = qint64{8} << 30;

/// The wanted folder, made where it is missing, or the temporary folder.
QString usableFolder(const QString &wanted) {
    const bool isThere = !wanted.isEmpty() && QDir().mkpath(wanted) && QFileInfo(wanted).isWritable();
    return isThere ? wanted : GetTempDir();
}

} // namespace

StoredPixels::StoredPixels(StepStore &owner, const QImage &pixels)
    : store(owner), size(pixels.size()), opaque(pixels.format() == QImage::Format_RGB32), bytes(pixels.sizeInBytes()),
      m_picture(pixels) {
    const std::lock_guard lock(store.m_mutex);
    store.m_memoryBytes += bytes;
    ++store.m_inMemory;
}

StoredPixels::~StoredPixels() {
    const std::lock_guard lock(store.m_mutex);
    if (!m_picture.isNull()) {
        store.m_memoryBytes -= bytes;
        --store.m_inMemory;
    }
    if (!m_file.empty()) {
        store.m_diskBytes -= m_fileBytes;
        store.m_folder->remove(m_file);
    }
}

StepStore::StepStore(qint64 memoryBudget, qint64 diskBudget, const QString &wantedFolder)
    : m_memoryBudget(memoryBudget), m_wantedFolder(wantedFolder), m_diskBudget(diskBudget) {
    begin();
}

StepStore::~StepStore() = default;

StepStore::Reading StepStore::read(const Pixels &pixels, QImage &picture) const {
    std::string name;
    {
        const std::lock_guard lock(m_mutex);
        if (!pixels->m_picture.isNull()) {
            picture = pixels->m_picture;
            return Reading::Done;
        }
        name = pixels->m_file;
    }
    const int file = m_folder->open(name);
    if (file < 0) {
        return errno == ENOENT ? Reading::Lost : Reading::NotNow;
    }
    QImage target = newPicture(pixels->size.width(), pixels->size.height(), pixels->opaque);
    Reading reading = Reading::NotNow;
    try {
        if (!target.isNull()) {
            reading = readCompressed(file, target) ? Reading::Done : errno == 0 ? Reading::Lost : Reading::NotNow;
        }
    } catch (const std::bad_alloc &) {
        reading = Reading::NotNow;
    }
    ::close(file);
    if (reading == Reading::Done) {
        picture = target;
    }
    return reading;
}

void StepStore::spill(const Pixels &pixels) {
    pixels->spilled = true;
    {
        const std::lock_guard lock(m_mutex);
        m_queue.push_back(pixels);
    }
    begin();
    m_workToDo.notify_one();
}

bool StepStore::takeFailure() {
    std::vector<std::weak_ptr<StoredPixels>> refused;
    {
        const std::lock_guard lock(m_mutex);
        if (!std::exchange(m_failed, false)) {
            return false;
        }
        refused.swap(m_refused);
    }
    for (const auto &step : refused) {
        if (const Pixels pixels = step.lock()) {
            pixels->spilled = false;
        }
    }
    return true;
}

bool StepStore::waitForWriter() {
    std::unique_lock lock(m_mutex);
    if (m_failed) {
        return true;
    }
    if (m_queue.empty() && !m_writing) {
        return false;
    }
    if (!begin()) {
        writeFirst(lock, {});
        return true;
    }
    m_workDone.wait(lock, [this, before = m_finished] { return m_finished != before; });
    return true;
}

bool StepStore::isOverBudget() const {
    const std::lock_guard lock(m_mutex);
    return m_memoryBytes > m_memoryBudget && m_inMemory > 1;
}

qint64 StepStore::memoryBytes() const {
    const std::lock_guard lock(m_mutex);
    return m_memoryBytes;
}

qint64 StepStore::diskBytes() const {
    const std::lock_guard lock(m_mutex);
    return m_diskBytes;
}

/// Makes it when it is first asked for; false when memory is refused.
bool StepStore::hasFolder() {
    try {
        if (!m_folder) {
            const QString parent = usableFolder(m_wantedFolder);
            SpillFolder::sweep(parent);
            m_folder.emplace(parent);
        }
    } catch (const std::bad_alloc &) {
        return false;
    }
    return true;
}

/// The thread runs. False when the system refuses it now.
bool StepStore::begin() {
    if (!m_thread.joinable()) {
        try {
            m_thread = std::jthread([this](const std::stop_token &stop) { work(stop); });
        } catch (const std::system_error &) {
            return false;
        }
    }
    return true;
}

void StepStore::work(const std::stop_token &stop) {
    hasFolder();
    for (;;) {
        std::unique_lock lock(m_mutex);
        if (!m_workToDo.wait(lock, stop, [this] { return !m_queue.empty(); }) || stop.stop_requested()) {
            return;
        }
        writeFirst(lock, stop);
    }
}

/// The first that waits. Without the lock afterwards.
void StepStore::writeFirst(std::unique_lock<std::mutex> &lock, const std::stop_token &stop) {
    const Pixels pixels = m_queue.front().lock();
    m_queue.pop_front();
    if (pixels == nullptr) { // the step was dropped meanwhile
        ++m_finished;
        m_workDone.notify_all();
        lock.unlock();
        return;
    }
    m_writing = true;
    const QImage picture = pixels->m_picture;
    const bool compress = m_queue.empty(); // more is waiting: quick counts
    const qint64 used = m_diskBytes;
    const std::string name = "step-" + std::to_string(++m_files);
    lock.unlock();
    if (m_diskBudget < 0 && hasFolder()) {
        m_diskBudget = std::min(largestDiskBudget, m_folder->freeBytes() / 2);
    }
    const qint64 limit = m_diskBudget - used;
    qint64 written = write(name, picture, compress, limit, stop);
    if (written < 0) {
        written = write(name, picture, compress, limit, stop); // what was refused once need not cost a step
    }
    finish(pixels, name, written);
}

qint64 StepStore::write(const std::string &name, const QImage &picture, bool compress, qint64 limit,
                        const std::stop_token &stop) {
    int file = -1;
    qint64 written = -1;
    try {
        file = hasFolder() ? m_folder->create(name) : -1;
        written = file < 0 ? -1 : writeCompressed(file, picture, compress, limit, stop);
    } catch (const std::bad_alloc &) {
        written = -1; // as if the disk were full
    }
    if (file < 0) {
        return -1;
    }
    if (::close(file) != 0) {
        written = -1;
    }
    if (written < 0) {
        m_folder->remove(name);
    }
    return written;
}

void StepStore::finish(const Pixels &pixels, const std::string &name, qint64 written) {
    const std::lock_guard lock(m_mutex);
    if (written >= 0) {
        pixels->m_picture = QImage();
        m_memoryBytes -= pixels->bytes;
        --m_inMemory;
        pixels->m_file = name;
        pixels->m_fileBytes = written;
        m_diskBytes += written;
    } else {
        m_failed = true;
        try {
            m_refused.emplace_back(pixels);
            m_refused.insert(m_refused.end(), m_queue.begin(), m_queue.end());
        } catch (const std::bad_alloc &) { // they stay in memory without another try
        }
        m_queue.clear();
    }
    m_writing = false;
    ++m_finished;
    m_workDone.notify_all();
}

} // namespace lumora
