#pragma once

#include "platform/FSPlayer.h"

namespace ondavia {

/// Writes what the engine knows of its streams to the player log, at debug level.
void logTrackDump(const FSMonitor& monitor);

} // namespace ondavia
