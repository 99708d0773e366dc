#include "cli/Items.h"

#include "app/Services.h"
#include "base/Text.h"
#include "cli/Account.h"
#include "cli/Command.h"
#include "protocol/Episode.h"
#include "protocol/XtreamAPIClient.h"

#include <algorithm>

namespace ondavia::cli {

Channel requireItem(Services& services, const std::string& id) {
    auto item = services.store->mainContext().fetchFirst<Channel>({.where = field(&Channel::id) == id});
    if (!item) {
        throw CommandError("the catalogue has no item with the id " + id);
    }
    return std::move(*item);
}

Channel requireSeries(Services& services, const std::string& idOrNumber) {
    const bool isNumber = parseDecimalInteger(idOrNumber).has_value();
    Channel series = requireItem(services, isNumber ? "main_series_" + idOrNumber : idOrNumber);
    if (!series.seriesId) {
        throw CommandError(series.id + " is no series");
    }
    return series;
}

Output::Table tableOfItems(Output& output) {
    return {output, {"id", "groupTitle", "year", "name"}};
}

void requireStream(const Channel& item) {
    if (item.url.empty()) {
        throw CommandError("a series has no stream of its own; its episodes have: ondavia-cli series " +
                           item.id);
    }
}

std::vector<Channel> episodesOf(const XtreamSeriesInfo& info, const Channel& parent,
                                const XtreamAPIClient& client) {
    using Season = std::pair<std::int64_t, const std::vector<XtreamEpisode>*>;
    std::vector<Season> seasons;
    for (const auto& [key, episodes] : info.episodes.value_or(XtreamEpisodeMap())) {
        seasons.emplace_back(parseDecimalInteger(key).value_or(0), &info.episodes->at(key));
    }
    // The keys are texts, among which 10 comes before 2.
    std::ranges::stable_sort(seasons, {}, &Season::first);
    std::vector<Channel> items;
    for (const auto& [number, episodes] : seasons) {
        for (const auto& episode : *episodes) {
            if (episode.id) {
                items.push_back(makeEpisode(episode, *episode.id, parent, client));
            }
        }
    }
    return items;
}

QCoro::Task<Channel> findItem(Services& services, std::string id) {
    const std::size_t marker = id.rfind("_ep_");
    if (marker == std::string::npos) {
        co_return requireItem(services, id);
    }
    const Channel parent = requireSeries(services, id.substr(0, marker));
    const auto client = requireClient(services.appState);
    const XtreamSeriesInfo info = co_await client->getSeriesInfo(*parent.seriesId);
    const auto episodes = episodesOf(info, parent, *client);
    const auto episode = std::ranges::find(episodes, id, &Channel::id);
    if (episode == episodes.end()) {
        throw CommandError("the series " + parent.id + " has no episode with the id " + id);
    }
    co_return *episode;
}

} // namespace ondavia::cli
