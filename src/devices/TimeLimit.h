// How long one waits for another program. Only time counts in which Lumora runs: when the computer was asleep, or a
// virtual machine stopped, the answer could not come, and the clock is ahead when Lumora goes on.
#pragma once

#include <QTimer>
#include <functional>

namespace lumora {

class TimeLimit {
  public:
    /// `elapsed` is called when the time is up, by the event loop of this thread.
    explicit TimeLimit(std::function<void()> elapsed);
    /// Begins, or begins again; milliseconds, 1 or more. A stop of the program lengthens it by an eighth at most.
    void start(int milliseconds);
    void stop() { m_tick.stop(); }

  private:
    std::function<void()> m_elapsed;
    QTimer m_tick;
    int m_ticksLeft = 0;
};

} // namespace lumora
