#pragma once

#include "platform/FSPlayer.h"

#include <chrono>

namespace ondavia {

/// Where an engine's picture and sound go.
enum class MpvOutputs {
    /// The item of the engine's view, and the system's sound.
    Window,
    /// Nowhere, at the stream's pace: for the command line. Needs no QGuiApplication.
    Null,
};

/// Makes engines on libmpv. Main thread, where the engines then live; `center` outlives them. Sets the
/// numeric locale to "C", which libmpv insists on. What an engine that was shut down has besides its stream
/// is kept for the next one of this factory, for half a minute. The end of the application waits up to two
/// seconds for engines that were shut down.
[[nodiscard]] FSPlayerFactory makeMpvPlayerFactory(NotificationCenter& center, MpvOutputs outputs);

/// Waits until every engine that was shut down, and is not kept for the next one, has let go of its
/// connection and its threads; false when some had not within `timeout`. For programs and tests that end
/// without an application object.
bool waitForShutDownEngines(std::chrono::milliseconds timeout);

} // namespace ondavia
