#include "screens/player/NextEpisode.h"

#include "protocol/Episode.h"
#include "state/AppState.h"

namespace ondavia {

bool NextEpisode::exists(const AppState& appState) {
    return !appState.seriesEpisodes().empty() &&
           appState.currentEpisodeIndex() < std::ssize(appState.seriesEpisodes()) - 1;
}

std::optional<NextEpisode> NextEpisode::after(const AppState& appState) {
    const std::int64_t next = appState.currentEpisodeIndex() + 1;
    // The index is whatever the session was opened with.
    const bool isInList = next >= 0 && next < std::ssize(appState.seriesEpisodes());
    if (!isInList || !appState.seriesParentChannel()) {
        return std::nullopt;
    }
    const XtreamEpisode& episode = appState.seriesEpisodes()[static_cast<std::size_t>(next)];
    const auto client = appState.makeXtreamClient();
    if (!episode.id || !client) {
        return std::nullopt;
    }
    return NextEpisode{next, makeEpisode(episode, *episode.id, *appState.seriesParentChannel(), *client),
                       subtitleURLsOf(episode)};
}

} // namespace ondavia
