#include "TurnWatch.h"

#include <QAbstractEventDispatcher>
#include <algorithm>
#include <sys/resource.h>

namespace lumora::play {

TurnWatch::TurnWatch(QObject *parent) : QObject(parent), m_turnBegan(threadTime()) {
    const auto *loop = QAbstractEventDispatcher::instance();
    connect(loop, &QAbstractEventDispatcher::awake, this, &TurnWatch::turn);
    connect(loop, &QAbstractEventDispatcher::aboutToBlock, this, &TurnWatch::turn);
}

std::chrono::nanoseconds TurnWatch::threadTime() {
    rusage used{};
    ::getrusage(RUSAGE_THREAD, &used);
    return std::chrono::seconds(used.ru_utime.tv_sec) + std::chrono::microseconds(used.ru_utime.tv_usec);
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
