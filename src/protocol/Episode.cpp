#include "protocol/Episode.h"

#include "base/Text.h"
#include "platform/URLSession.h"
#include "protocol/XtreamAPIClient.h"

#include <QUrl>

namespace ondavia {

Channel makeEpisode(const XtreamEpisode& episode, const std::string& episodeId, const Channel& parent,
                    const XtreamAPIClient& client) {
    const std::string extension = episode.containerExtension.value_or("mp4");
    const bool hasImage = episode.info && episode.info->movieImage;

    Channel channel;
    channel.id = parent.id + "_ep_" + episodeId;
    channel.playlistId = parent.playlistId;
    channel.streamId = parseDecimalInteger(episodeId).value_or(0);
    channel.name = parent.name + " - Ep. " + std::to_string(episode.episodeNum().value_or(0));
    channel.type = "series";
    channel.groupTitle = parent.groupTitle;
    channel.logo = hasImage ? episode.info->movieImage : parent.logo;
    channel.url = client.getSeriesStreamURL(episodeId, extension);
    channel.seriesId = parent.seriesId;
    channel.seriesName = parent.name;
    channel.seasonNum = episode.season;
    channel.episodeNum = episode.episodeNum();
    channel.episodeTitle = episode.title;
    channel.containerExtension = extension;
    channel.addedAt = currentDate();
    return channel;
}

std::vector<std::string> subtitleURLsOf(const XtreamEpisode& episode) {
    std::vector<std::string> urls;
    for (const std::string& text : episode.subtitles.value_or(std::vector<std::string>())) {
        if (const auto url = makeURL(text)) {
            urls.push_back(url->toEncoded().toStdString());
        }
    }
    return urls;
}

} // namespace ondavia
