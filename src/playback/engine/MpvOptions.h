#pragma once

#include "platform/FSPlayer.h"

#include <string>
#include <string_view>
#include <vector>

namespace ondavia::engine {

struct MpvOption final {
    std::string name;
    std::string value;
    bool operator==(const MpvOption&) const = default;
};

/// What every engine is started with, whatever it plays.
[[nodiscard]] std::vector<MpvOption> baseOptions();

/// The mpv options for what the system asked for, in order; a key without an equivalent gives none.
[[nodiscard]] std::vector<MpvOption> translated(const FSOptions& options);

/// Whether the engine opens this address at all: network streams and files. mpv's own pseudo protocols
/// (edl, lavfi, memory, av, cdda and the like) can name any other source and stay out of a provider's
/// reach.
[[nodiscard]] bool isPlayableAddress(std::string_view address);

} // namespace ondavia::engine
