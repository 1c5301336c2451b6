#include "imaging/PictureBuffers.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <new>
#include <sys/mman.h>
#include <utility>

namespace lumora {

namespace {

constexpr std::size_t hugePage = std::size_t(2) << 20;
// A smaller buffer gains less than a virtual machine may need to get a huge page from its host, some milliseconds.
constexpr std::size_t smallestOfHugePages = std::size_t(16) << 20;
thread_local bool hugePagesWanted = true;
// A change alternates between two buffers: before and after.
constexpr std::size_t idleBuffersAtMost = 2;
constexpr std::size_t idleBytesAtMost = std::size_t(512) << 20;

std::uint8_t *mapMemory(std::size_t bytes) noexcept {
    // One huge page more than asked for, so that an aligned start can be cut out of it.
    void *mapped = mmap(nullptr, bytes + hugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) {
        return nullptr;
    }
    auto *first = static_cast<std::uint8_t *>(mapped);
    const std::size_t before = (hugePage - reinterpret_cast<std::uintptr_t>(first) % hugePage) % hugePage;
    if (before > 0) {
        munmap(first, before);
    }
    munmap(first + before + bytes, hugePage - before);
    if (hugePagesWanted && bytes >= smallestOfHugePages) {
        madvise(first + before, bytes, MADV_HUGEPAGE); // a kernel without huge pages only makes this slower
    }
    return first + before;
}

void unmap(KeptBuffer *buffer) noexcept {
    munmap(buffer->memory, buffer->bytes);
    delete buffer;
}

class Pool {
  public:
    KeptBuffer *take(std::size_t bytes) noexcept {
        const std::scoped_lock lock(m_mutex);
        KeptBuffer **best = nullptr;
        for (KeptBuffer *&kept : m_idle) {
            // A buffer much larger than the picture would waste memory.
            const bool fits = kept != nullptr && kept->bytes >= bytes && kept->bytes - bytes <= bytes / 4;
            if (fits && (best == nullptr || kept->bytes < (*best)->bytes)) {
                best = &kept;
            }
        }
        return best != nullptr ? std::exchange(*best, nullptr) : nullptr;
    }

    using Leaving = std::array<KeptBuffer *, idleBuffersAtMost>;

    /// Keeps it and returns the buffer to evict: itself when it is too large, else the oldest, because the current size
    /// is the most likely to be requested again.
    Leaving keep(KeptBuffer *buffer) noexcept {
        Leaving leaving{};
        if (buffer->bytes > idleBytesAtMost) {
            leaving[0] = buffer;
            return leaving;
        }
        const std::scoped_lock lock(m_mutex);
        std::size_t count = 0;
        auto hole = std::find(m_idle.begin(), m_idle.end(), nullptr);
        if (hole == m_idle.end()) {
            leaving[count++] = *--hole;
        }
        std::move_backward(m_idle.begin(), hole, hole + 1);
        m_idle.front() = buffer;
        for (std::size_t oldest = m_idle.size() - 1; idleBytes() > idleBytesAtMost; --oldest) {
            leaving[count++] = std::exchange(m_idle[oldest], nullptr);
        }
        return leaving;
    }

    void clear() noexcept {
        const std::scoped_lock lock(m_mutex);
        for (KeptBuffer *&kept : m_idle) {
            if (kept != nullptr) {
                unmap(std::exchange(kept, nullptr));
            }
        }
    }

    std::size_t bytes() noexcept {
        const std::scoped_lock lock(m_mutex);
        return idleBytes();
    }

  private:
    std::size_t idleBytes() const noexcept {
        std::size_t sum = 0;
        for (const KeptBuffer *kept : m_idle) {
            sum += kept != nullptr ? kept->bytes : 0;
        }
        return sum;
    }

    std::mutex m_mutex;
    std::array<KeptBuffer *, idleBuffersAtMost> m_idle{};
};

Pool &pool() {
    // Never destroyed: a picture with static lifetime may release its buffer after all other destructors.
    static Pool *const thePool = new Pool;
    return *thePool;
}

} // namespace

KeptBuffer *takeBuffer(std::size_t bytes) noexcept {
    const std::size_t rounded = (bytes + hugePage - 1) / hugePage * hugePage;
    if (KeptBuffer *kept = pool().take(rounded)) {
        return kept;
    }
    auto *fresh = new (std::nothrow) KeptBuffer;
    if (fresh == nullptr) {
        return nullptr;
    }
    fresh->bytes = rounded;
    fresh->memory = mapMemory(rounded);
    if (fresh->memory == nullptr) {
        pool().clear(); // idle buffers may be the memory that is missing
        fresh->memory = mapMemory(rounded);
    }
    if (fresh->memory == nullptr) {
        delete fresh;
        return nullptr;
    }
    return fresh;
}

void setHugePages(bool wanted) noexcept {
    hugePagesWanted = wanted;
}

void giveBufferBack(KeptBuffer *buffer) noexcept {
    for (KeptBuffer *leaving : pool().keep(buffer)) {
        if (leaving != nullptr) {
            unmap(leaving);
        }
    }
}

void releaseIdleBuffers() noexcept {
    pool().clear();
}

std::size_t idleBufferBytes() noexcept {
    return pool().bytes();
}

} // namespace lumora
