// How long the window's thread computes between two looks at its events: what a user feels as a window that hangs.
// Counted in processor time outside the kernel, so that neither a busy machine matters nor how soon it hands out
// memory.
#pragma once

#include <QObject>
#include <chrono>

namespace lumora::play {

class TurnWatch : public QObject {
    Q_OBJECT

  public:
    /// Watches the event loop of the thread that it is made in, nested ones included.
    explicit TurnWatch(QObject *parent = nullptr);

    /// The longest turn since it was made or last asked for.
    std::chrono::milliseconds takeLongest();
    /// What the watch's owner does by itself: it counts for no turn.
    template <typename Own> auto leaveOut(Own own) {
        const std::chrono::nanoseconds before = threadTime();
        auto result = own();
        m_turnBegan += threadTime() - before;
        return result;
    }

  private:
    static std::chrono::nanoseconds threadTime();
    void turn();

    std::chrono::nanoseconds m_turnBegan;
    std::chrono::nanoseconds m_longest{0};
};

} // namespace lumora::play
