#include "screens/player/NextEpisode.h"

#include "platform/URLSession.h"
#include "protocol/Episode.h"
#include "state/AppState.h"

#include <QUrl>

namespace ondavia {

namespace {

std::vector<std::string> urlsAmong(const std::optional<std::vector<std::string>>& texts) {
    std::vector<std::string> urls;
    for (const std::string& text : texts.value_or(std::vector<std::string>())) {
        if (const auto url = makeURL(text)) {
            urls.push_back(url->toEncoded().toStdString());
        }
    }
    return urls;
}

} // namespace

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
                       urlsAmong(episode.subtitles)};
}

} // namespace ondavia
