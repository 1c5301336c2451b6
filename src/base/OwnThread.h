// Work in a thread of its own, as long as the system gives one. Not the toolkit's pool: that counts a thread which the
// system refused as busy, and whoever waits for it at the end waits for ever.
#pragma once

#include <functional>
#include <future>

namespace lumora {

/// Begins `work` in a thread of its own; the future is ready when it is done, and waits for it when it goes. Where the
/// system refuses a thread the work is done here, before this returns.
std::future<void> inOwnThread(std::function<void()> work);

/// The same for work that nobody waits for but the application, at its end. What the work throws is lost. For the
/// window's thread alone.
void besides(std::function<void()> work);
/// Waits until all such work is done. The application does it before it is gone.
void finishBesides();

} // namespace lumora
