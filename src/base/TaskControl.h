// What a long computation and the window that waits for it tell each other: stop, and how far it has come. Knows
// neither windows nor Qt, so that kernels and file formats can ask.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>

namespace lumora {

/// May be used from any thread.
class TaskControl {
  public:
    /// Asks the computation to end early. It does so at its next strip or band of rows; its result is to be dropped.
    void cancel() { m_cancelled = true; }
    bool isCancelled() const { return m_cancelled; }

    /// `done` of `total` rows, bytes or whatever the computation counts; a total of 0 says nothing.
    void setProgress(std::int64_t done, std::int64_t total);
    /// Per cent, 0 to 100; -1 while it is not known.
    int percent() const { return m_percent; }

    /// That of the computation which this thread does; null outside of any. Threads that help ask for nothing: whoever
    /// spreads the work asks first and hands the answer on.
    static TaskControl *current();
    static bool isCurrentCancelled();

    /// Makes a control the current one of this thread for its own lifetime.
    class Scope {
      public:
        explicit Scope(TaskControl *control);
        ~Scope();
        Scope(const Scope &) = delete;
        Scope &operator=(const Scope &) = delete;

      private:
        TaskControl *m_before;
    };

  private:
    std::atomic<bool> m_cancelled = false;
    std::atomic<int> m_percent = -1;
};

/// Whether the user is offered to stop a computation. Only where whoever started it drops a result that is not whole.
enum class Stopping { NotOffered, Offered };

/// Does the work and returns when it is done; where and with what on the screen meanwhile, the giver decides. False
/// when it was stopped: what it made is not whole.
using TaskRunner = std::function<bool(const std::function<void()> &work, Stopping stopping)>;

} // namespace lumora
