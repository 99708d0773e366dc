// Which episode plays, and what the player is told of the others.
#include "base/AppLogger.h"
#include "base/Text.h"
#include "screens/details/SeriesDetailViewModel.h"
#include "state/AppState.h"
#include "store/StoreContext.h"

#include <algorithm>
#include <ranges>

namespace ondavia {
namespace {

using Season = XtreamEpisodeMap::value_type;

std::int64_t seasonNumber(const Season* season) {
    return parseDecimalInteger(season->first).value_or(0);
}

std::pair<std::int64_t, std::int64_t> airing(const XtreamEpisode* episode) {
    return {episode->season.value_or(0), episode->episodeNum().value_or(0)};
}

/// In whatever order the seasons stand in.
std::vector<const XtreamEpisode*> everyEpisode(const std::optional<XtreamSeriesInfo>& info) {
    std::vector<const XtreamEpisode*> all;
    if (info && info->episodes) {
        for (const Season& season : *info->episodes) {
            for (const XtreamEpisode& episode : season.second) {
                all.push_back(&episode);
            }
        }
    }
    return all;
}

} // namespace

std::vector<XtreamEpisode> SeriesDetailViewModel::currentEpisodes() const {
    if (!seriesInfo() || !seriesInfo()->episodes) {
        return {};
    }
    const auto season = seriesInfo()->episodes->find(std::to_string(selectedSeason()));
    return season != seriesInfo()->episodes->end() ? season->second : std::vector<XtreamEpisode>();
}

std::vector<XtreamEpisode> SeriesDetailViewModel::allEpisodesSorted() const {
    if (!seriesInfo() || !seriesInfo()->episodes) {
        return {};
    }
    std::vector<const Season*> seasons;
    for (const Season& season : *seriesInfo()->episodes) {
        seasons.push_back(&season);
    }
    std::ranges::stable_sort(seasons, {}, seasonNumber);
    std::vector<XtreamEpisode> sorted;
    for (const Season* season : seasons) {
        sorted.insert(sorted.end(), season->second.begin(), season->second.end());
    }
    return sorted;
}

bool SeriesDetailViewModel::hasEpisodes() const {
    return !everyEpisode(seriesInfo()).empty();
}

bool SeriesDetailViewModel::canPlay() const {
    return continues() || hasEpisodes();
}

void SeriesDetailViewModel::play() {
    if (lastWatchedEpisode()) {
        playEpisodeFromHistory(*lastWatchedEpisode());
    } else {
        playFirstEpisode();
    }
}

void SeriesDetailViewModel::playEpisodeFromHistory(const WatchHistory& history) {
    if (!seriesInfo() || !seriesInfo()->episodes) {
        if (auto item = findChannelFromHistory(history)) {
            services().appState.playChannel(std::move(*item));
        }
        return;
    }
    const auto all = everyEpisode(seriesInfo());
    const auto watched = std::ranges::find_if(all, [&](const XtreamEpisode* episode) {
        return episode->id && series().id + "_ep_" + *episode->id == history.channelId;
    });
    if (watched != all.end()) {
        playEpisodeDirectly(**watched);
    } else {
        // It has left the catalogue.
        playFirstEpisode();
    }
}

std::optional<Channel> SeriesDetailViewModel::findChannelFromHistory(const WatchHistory& history) const {
    try {
        return services().modelContext.fetchFirst<Channel>(
            {.where = field(&Channel::id) == history.channelId});
    } catch (const StoreError& error) {
        AppLogger::general.error("The episode watched last could not be read: %s", {error.what()});
        return std::nullopt;
    }
}

void SeriesDetailViewModel::playFirstEpisode() {
    const auto all = everyEpisode(seriesInfo());
    const auto first = std::ranges::min_element(all, {}, airing);
    if (first != all.end()) {
        playEpisodeDirectly(**first);
    }
}

void SeriesDetailViewModel::playEpisodeDirectly(const XtreamEpisode& episode) {
    auto item = prepareEpisode(services().appState, episode, series());
    if (!item) {
        return;
    }
    auto sorted = allEpisodesSorted();
    const auto place = std::ranges::find(sorted, episode.id, &XtreamEpisode::id);
    const auto index = place != sorted.end() ? place - sorted.begin() : 0;
    services().appState.playSeriesEpisode(std::move(*item), std::move(sorted), index, series());
}

} // namespace ondavia
