#include "devices/TimeLimit.h"

#include <algorithm>

namespace lumora {

namespace {

constexpr int ticks = 8; // a timer that is late ticks once, however many of its ticks were missed

} // namespace

TimeLimit::TimeLimit(std::function<void()> elapsed) : m_elapsed(std::move(elapsed)) {
    QObject::connect(&m_tick, &QTimer::timeout, &m_tick, [this] {
        if (--m_ticksLeft == 0) {
            m_tick.stop();
            m_elapsed();
        }
    });
}

void TimeLimit::start(int milliseconds) {
    m_ticksLeft = ticks;
    m_tick.start(std::max(1, milliseconds / ticks));
}

} // namespace lumora
