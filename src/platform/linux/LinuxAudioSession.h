#pragma once

#include "platform/AVAudioSession.h"

#include <memory>

namespace ondavia {

/// Accepts every call: the sound server mixes whatever plays.
[[nodiscard]] std::unique_ptr<AVAudioSession> makeLinuxAudioSession();

/// Asks org.freedesktop.ScreenSaver on the session bus.
[[nodiscard]] std::unique_ptr<IdleInhibitor> makeScreenSaverInhibitor();

} // namespace ondavia
