#pragma once

#include "platform/FSPlayer.h"
#include "playback/engine/MpvPlayerFactory.h"

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

/// All that an engine's mpv is started with.
[[nodiscard]] std::vector<MpvOption> engineOptions(MpvOutputs outputs, const FSOptions& options);

/// What a file begins with, whatever was picked in the one before.
[[nodiscard]] std::vector<MpvOption> trackOptions();

/// What an engine for this address may open: the address itself by its own protocol, and what the stream
/// names in turn over HTTP only. Nothing that a server sends makes it listen, or read a file.
[[nodiscard]] std::vector<MpvOption> accessOptions(std::string_view address);

/// The mpv options for what the system asked for, in order; a key without an equivalent gives none.
[[nodiscard]] std::vector<MpvOption> translated(const FSOptions& options);

/// Whether the engine opens this address at all: network streams and files. mpv's own pseudo protocols
/// (edl, lavfi, memory, av, cdda and the like) can name any other source and stay out of a provider's
/// reach.
[[nodiscard]] bool isPlayableAddress(std::string_view address);

/// Whether the address is one of HTTP, encrypted or not.
[[nodiscard]] bool isHttpAddress(std::string_view address);
[[nodiscard]] bool isFileAddress(std::string_view address);

} // namespace ondavia::engine
