// Ends a run that hangs, even one whose event loop no longer turns.
#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <thread>

namespace lumora::play {

class Watchdog {
  public:
    /// Calls `bark` and ends the process with exit code 1 when no step begins for that long; `leftovers` is removed
    /// before that.
    Watchdog(std::chrono::seconds patience, std::filesystem::path leftovers, std::function<void()> bark);

    /// A step has begun.
    void feed() { m_fed = now(); }

  private:
    static std::chrono::steady_clock::duration now() { return std::chrono::steady_clock::now().time_since_epoch(); }
    void watch(const std::stop_token &stop);

    std::chrono::seconds m_patience;
    std::filesystem::path m_leftovers;
    std::function<void()> m_bark;
    std::atomic<std::chrono::steady_clock::duration> m_fed = now();
    std::jthread m_thread; // last, so that it ends before what it looks at
};

} // namespace lumora::play
