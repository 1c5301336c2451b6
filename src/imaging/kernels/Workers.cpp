#include "imaging/kernels/Workers.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <optional>
#include <tbb/global_control.h>
#include <tbb/info.h>
#include <thread>
#include <vector>

namespace lumora {

namespace {

/// So many at once, for a moment.
bool threadsAreToBeHad(int count) {
    std::mutex gate;
    std::vector<std::jthread> threads;
    try {
        const std::lock_guard closed(gate);
        while (static_cast<int>(threads.size()) < count) {
            threads.emplace_back([&gate] { const std::lock_guard passed(gate); });
        }
    } catch (const std::exception &) {
        return false;
    }
    return true;
}

} // namespace

void prepareWorkers() {
    static std::atomic<bool> ready = false;
    if (ready.load(std::memory_order_acquire)) {
        return;
    }
    static std::mutex mutex;
    static std::optional<tbb::global_control> alone;
    const std::lock_guard lock(mutex);
    if (ready.load(std::memory_order_relaxed)) {
        return;
    }
    if (threadsAreToBeHad(tbb::info::default_concurrency() - 1)) {
        alone.reset();
        ready.store(true, std::memory_order_release);
    } else if (!alone) {
        alone.emplace(tbb::global_control::max_allowed_parallelism, 1);
    }
}

} // namespace lumora
