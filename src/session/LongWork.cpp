#include "session/LongWork.h"

#include "session/DoEvents.h"

#include <QElapsedTimer>
#include <chrono>
#include <future>
#include <system_error>

namespace lumora {

namespace {
constexpr std::chrono::milliseconds frame(15); // between two looks at the windows
}

void LongWork::run(const std::function<void()> &work) {
    std::future<void> done;
    if (!m_running) {
        try {
            done = std::async(std::launch::async, work);
        } catch (const std::system_error &) {
            done = {};
        }
    }
    if (!done.valid()) {
        work();
        return;
    }
    m_running = true;
    QElapsedTimer clock;
    clock.start();
    bool told = false;
    while (done.wait_for(frame) != std::future_status::ready) {
        if (!told && clock.hasExpired(quietTime)) {
            told = true;
            Q_EMIT began();
        }
        DoEvents();
    }
    m_running = false;
    if (told) {
        Q_EMIT ended();
    }
    done.get();
}

} // namespace lumora
