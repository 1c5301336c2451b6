#include "document/LongWork.h"

#include "document/DoEvents.h"

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
    const bool slow = done.wait_for(std::chrono::milliseconds(quietTime)) != std::future_status::ready;
    if (slow) {
        Q_EMIT began();
        do {
            DoEvents();
        } while (done.wait_for(frame) != std::future_status::ready);
        Q_EMIT ended();
    }
    m_running = false;
    done.get();
}

} // namespace lumora
