#pragma once

#include "platform/ScreenBrightness.h"

#include <filesystem>
#include <memory>

namespace ondavia {

class MessageBus;

/// The backlight that the kernel lists in `folder`; of several the one that the kernel would have used:
/// the firmware's before the platform's before a bare one. logind is asked to set it, in the name of the
/// session; never to its lowest step, which switches some screens off. `systemBus` must outlive the object.
[[nodiscard]] std::unique_ptr<ScreenBrightness>
makeLogindBrightness(MessageBus& systemBus, const std::filesystem::path& folder = "/sys/class/backlight");

} // namespace ondavia
