#pragma once

#include "platform/FSPlayer.h"

#include <QVariant>

#include <cstdint>
#include <optional>

namespace ondavia {

/// An integer out of stream metadata, where numbers come as numbers and as text: an integer, a text that
/// is a decimal integer and nothing else, or a fraction cut to its whole part and to 64 bits. Absent for
/// everything else.
[[nodiscard]] std::optional<std::int64_t> parseMetaInt(const QVariant& value);

/// Writes what the engine knows of its streams to the player log, at debug level.
void logTrackDump(const FSMonitor& monitor);

} // namespace ondavia
