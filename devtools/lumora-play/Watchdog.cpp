#include "Watchdog.h"

#include <cstdlib>
#include <system_error>

namespace lumora::play {

Watchdog::Watchdog(std::chrono::seconds patience, std::filesystem::path leftovers, std::function<void()> bark)
    : m_patience(patience), m_leftovers(std::move(leftovers)), m_bark(std::move(bark)),
      m_thread([this](const std::stop_token &stop) { watch(stop); }) {}

void Watchdog::watch(const std::stop_token &stop) {
    while (!stop.stop_requested()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        if (now() - m_fed.load() > m_patience) {
            m_bark();
            std::error_code ignored;
            std::filesystem::remove_all(m_leftovers, ignored);
            std::_Exit(1);
        }
    }
}

} // namespace lumora::play
