// Connects a long computation and the window that waits for it: cancellation and progress. Depends on neither windows
// nor Qt, so that kernels and file formats can use it.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>

namespace lumora {

/// May be used from any thread.
class TaskControl {
  public:
    /// Requests cancellation. The computation ends at its next strip or band of rows; its result must be discarded.
    void cancel() { m_cancelled = true; }
    bool isCancelled() const { return m_cancelled; }

    /// `done` of `total` rows, bytes or whatever the computation counts; a total of 0 is ignored.
    void setProgress(std::int64_t done, std::int64_t total);
    /// Per cent, 0 to 100; -1 while it is not known.
    int percent() const { return m_percent; }

    /// The control of the computation that this thread runs; null outside of any. Worker threads have none: the thread
    /// that distributes the work reads it and passes it on.
    static TaskControl *current();
    static bool isCurrentCancelled();

    /// Makes a control current for this thread during its own lifetime.
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

/// Whether the user may cancel a computation. Only where the caller discards an incomplete result.
enum class Stopping { NotOffered, Offered };

/// Runs the task and returns when it is done; the provider decides on which thread and what the screen shows meanwhile.
/// Returns false when it was cancelled: the result is incomplete.
using TaskRunner = std::function<bool(const std::function<void()> &work, Stopping stopping)>;

} // namespace lumora
