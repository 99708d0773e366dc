#include "app/Services.h"
#include "base/VisibleText.h"
#include "cli/Account.h"
#include "cli/Arguments.h"
#include "cli/Items.h"
#include "cli/Output.h"
#include "protocol/XtreamAPIClient.h"

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
        writeLine(stderr, "warning: the provider does not announce recordings of this channel");
    }
    return requireClient(services.appState)->getCatchupURL(channel.streamId, catchup.start, catchup.minutes);
}

} // namespace

QCoro::Task<void> showSeries(CommandContext context) {
    const Channel series = requireSeries(context.services, context.arguments.id);
    const auto client = requireClient(context.services.appState);
    const XtreamSeriesInfo info = co_await client->getSeriesInfo(*series.seriesId);
    if (!info.episodes) {
        writeLine(stderr, "warning: the provider's list of episodes cannot be read");
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
    if (!catchup) {
        requireStream(item);
    }
    const std::string url = catchup ? catchupURL(context.services, item, *catchup) : item.url;
    context.output.printURL(item.id, url);
}

} // namespace ondavia::cli
