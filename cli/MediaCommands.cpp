#include "app/Services.h"
#include "cli/Account.h"
#include "cli/Arguments.h"
#include "cli/Items.h"
#include "cli/Output.h"
#include "protocol/XtreamAPIClient.h"

#include <cstdio>

namespace ondavia::cli {
namespace {

Record recordOfSeason(const XtreamSeason& season) {
    return {{"seasonNumber", toValue(season.seasonNumber)}, {"name", toValue(season.name)},
            {"episodeCount", toValue(season.episodeCount)}, {"airDate", toValue(season.airDate)},
            {"overview", toValue(season.overview)},         {"cover", toValue(season.cover)}};
}

std::string catchupURL(const Services& services, const Channel& channel, const Catchup& catchup) {
    if (channel.type != "live") {
        throw CommandError(channel.id + " is no live channel: it has no recordings");
    }
    if (!channel.tvArchive) {
        std::fputs("warning: the provider does not announce recordings of this channel\n", stderr);
    }
    return requireClient(services.appState)->getCatchupURL(channel.streamId, catchup.start, catchup.minutes);
}

} // namespace

QCoro::Task<void> showSeries(CommandContext context) {
    const Channel series = requireSeries(context.services, context.arguments.id);
    const auto client = requireClient(context.services.appState);
    const XtreamSeriesInfo info = co_await client->getSeriesInfo(*series.seriesId);
    if (!info.episodes) {
        std::fputs("warning: the provider's list of episodes cannot be read\n", stderr);
    }
    Output::Table seasons(context.output, {"name", "episodeCount", "airDate"});
    for (const auto& season : info.seasons.value_or(std::vector<XtreamSeason>())) {
        seasons.add(recordOfSeason(season));
    }
    seasons.finish();
    Output::Table episodes(context.output, {"id", "seasonNum", "episodeNum", "episodeTitle"});
    for (const auto& episode : episodesOf(info, series, *client)) {
        episodes.add(recordOf(episode));
    }
    episodes.finish();
}

QCoro::Task<void> printURL(CommandContext context) {
    const Channel item = co_await findItem(context.services, context.arguments.id);
    const auto& catchup = context.arguments.catchup;
    const std::string url = catchup ? catchupURL(context.services, item, *catchup) : item.url;
    if (url.empty()) {
        throw CommandError("a series has no stream of its own; its episodes have: ondavia-cli series " +
                           item.id);
    }
    context.output.printURL(item.id, url);
}

} // namespace ondavia::cli
