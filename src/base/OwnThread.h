// Work in a thread of its own, as long as the system gives one. Not the toolkit's pool: that counts a thread which the
// system refused as busy, and whoever waits for it at the end waits for ever.
#pragma once

#include <exception>
#include <functional>
#include <future>
#include <memory>
#include <type_traits>
#include <utility>

namespace lumora {

/// Begins `work` in a thread of its own; the future has what it returns or throws, and waits for it when it goes. Where
/// the system refuses a thread the work is done here, before this returns.
template <typename Work> std::future<std::invoke_result_t<Work &>> inOwnThread(Work work) {
    const auto shared = std::make_shared<Work>(std::move(work));
    const auto run = [shared] { return (*shared)(); };
    try {
        return std::async(std::launch::async, run);
    } catch (const std::exception &) { // no thread is to be had, or no memory for one
        std::packaged_task<std::invoke_result_t<Work &>()> here(run);
        here();
        return here.get_future();
    }
}

/// The same for work that nobody waits for but the application, at its end. What the work throws is lost. For the
/// window's thread alone.
void besides(std::function<void()> work);
/// Waits until all such work is done. The application does it before it is gone.
void finishBesides();

} // namespace lumora
