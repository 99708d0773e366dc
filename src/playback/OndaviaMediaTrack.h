#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ondavia {

/// An audio or subtitle track that the user can choose.
struct OndaviaMediaTrack final {
    enum class Kind { audio, subtitle };

    /// Unique within one list.
    std::string id;
    Kind kind = Kind::audio;
    /// What the settings sheet calls it.
    std::string name;
    /// It is the active one.
    bool isEnabled = false;
    /// The engine's index of an audio stream.
    std::optional<std::int64_t> audioStreamIndex;
    /// Absolute text of an external subtitle's URL. May hold the account: never to be logged.
    std::optional<std::string> subtitleURL;
    /// The engine's index of a subtitle stream within the file.
    std::optional<std::int64_t> subtitleStreamIndex;

    bool operator==(const OndaviaMediaTrack&) const = default;
};

} // namespace ondavia
