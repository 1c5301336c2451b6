#include "TurnWatch.h"

#include <QAbstractEventDispatcher>
#include <algorithm>
#include <ctime>

namespace lumora::play {

TurnWatch::TurnWatch(QObject *parent) : QObject(parent), m_turnBegan(threadTime()) {
    const auto *loop = QAbstractEventDispatcher::instance();
    connect(loop, &QAbstractEventDispatcher::awake, this, &TurnWatch::turn);
    connect(loop, &QAbstractEventDispatcher::aboutToBlock, this, &TurnWatch::turn);
}

std::chrono::nanoseconds TurnWatch::threadTime() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

void TurnWatch::turn() {
    const std::chrono::nanoseconds now = threadTime();
    m_longest = std::max(m_longest, now - m_turnBegan);
    m_turnBegan = now;
}

std::chrono::milliseconds TurnWatch::takeLongest() {
    turn();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::exchange(m_longest, {}));
}

} // namespace lumora::play
