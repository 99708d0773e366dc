#pragma once

#include <chrono>
#include <memory>

struct mpv_handle;

namespace ondavia::engine {

/// Tells the reaper that a handle is on its way out; `reap` follows, from whoever lets go of it last, with
/// what this returned.
[[nodiscard]] std::shared_ptr<void> announceClosing();

/// Ends a handle on a thread of its own: mpv may wait there for a name look-up or a silent server, for as
/// long as the system's resolver likes. Any thread; returns at once.
void reap(mpv_handle* handle, std::shared_ptr<void> announcement);

/// Waits until every announced handle has ended; false when some had not within `timeout`. For the end
/// of the process, and for tests.
bool waitForReapedEngines(std::chrono::milliseconds timeout);

} // namespace ondavia::engine
