#include "imaging/kernels/Workers.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <optional>
#include <tbb/global_control.h>
#include <tbb/info.h>
#include <tbb/parallel_for.h>
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

/// Has oneTBB make its threads, in a loop that costs nobody anything when it is given up.
bool makeWorkers(int count) {
    try {
        tbb::parallel_for(0, count, [](int) {});
    } catch (const std::exception &) {
        return false;
    }
    return true;
}

/// Has oneTBB keep its threads when the thread that began a loop ends. Never taken away: at the end of the program
/// oneTBB would ask for them once more.
union KeptThreads {
    KeptThreads() : handle(tbb::attach{}) {}
    KeptThreads(const KeptThreads &) = delete;
    KeptThreads &operator=(const KeptThreads &) = delete;
    ~KeptThreads() {} // NOLINT(modernize-use-equals-default) which would be a deleted one

    tbb::task_scheduler_handle handle;
};

} // namespace

void prepareWorkers() {
    static std::atomic<bool> ready = false;
    if (ready.load(std::memory_order_acquire)) {
        return;
    }
    static std::mutex mutex;
    // Never taken away, for the same reason.
    static auto &alone = *new std::optional<tbb::global_control>;
    const std::lock_guard lock(mutex);
    if (ready.load(std::memory_order_relaxed)) {
        return;
    }
    static const KeptThreads kept;
    const int cores = tbb::info::default_concurrency();
    if (threadsAreToBeHad(cores - 1)) {
        alone.reset();
        ready.store(makeWorkers(cores), std::memory_order_release);
    }
    if (!ready.load(std::memory_order_relaxed) && !alone) {
        alone.emplace(tbb::global_control::max_allowed_parallelism, 1);
    }
}

} // namespace lumora
