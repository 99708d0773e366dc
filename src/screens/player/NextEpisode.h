#pragma once

#include "entities/Channel.h"

#include <optional>
#include <string>
#include <vector>

namespace ondavia {

class AppState;

/// The episode after the running one.
struct NextEpisode final {
    /// Its place in the playlist.
    std::int64_t index = 0;
    Channel item;
    /// Absolute texts of its external subtitle files.
    std::vector<std::string> subtitleURLs;

    /// Whether the playlist goes on.
    [[nodiscard]] static bool exists(const AppState& appState);
    /// Absent at the end of the playlist, and where account, series or the episode's id are missing. Main
    /// thread.
    [[nodiscard]] static std::optional<NextEpisode> after(const AppState& appState);
};

} // namespace ondavia
