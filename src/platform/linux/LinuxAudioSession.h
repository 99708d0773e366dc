#pragma once

#include "platform/AVAudioSession.h"

#include <memory>

namespace ondavia {

class MessageBus;
class PulseVolume;

/// Accepts every call: the sound server mixes whatever plays. `volume` must outlive the session.
[[nodiscard]] std::unique_ptr<AVAudioSession> makeLinuxAudioSession(PulseVolume& volume);

/// Asks org.freedesktop.ScreenSaver on the session bus, which must outlive the inhibitor.
[[nodiscard]] std::unique_ptr<IdleInhibitor> makeScreenSaverInhibitor(MessageBus& sessionBus);

} // namespace ondavia
