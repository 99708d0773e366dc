#pragma once

#include "platform/Scheduler.h"

namespace ondavia {

/// Time by the event loop of the thread that makes it: the main thread.
[[nodiscard]] std::unique_ptr<Scheduler> makeQtScheduler();

} // namespace ondavia
