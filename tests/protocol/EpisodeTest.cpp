#include "protocol/Episode.h"
#include "ClientSupport.h"

#include <gtest/gtest.h>

namespace ondavia {
namespace {

Channel parentSeries() {
    Channel parent;
    parent.id = "main_series_77";
    parent.playlistId = "main";
    parent.streamId = 77;
    parent.num = 9;
    parent.name = "Serie";
    parent.type = "series";
    parent.groupTitle = "Drama";
    parent.logo = "poster";
    parent.seriesId = 77;
    parent.plot = "p";
    parent.cast = "c";
    parent.rating = "8";
    parent.year = "2015";
    parent.backdrop = "b";
    parent.adult = true;
    return parent;
}

Channel episodeOf(const XtreamEpisode& episode, const std::string& episodeId = "5012") {
    return makeEpisode(episode, episodeId, parentSeries(), *testing::makeClient("http://h"));
}

TEST(Episode, isBuiltFromItsSeries) {
    XtreamEpisode episode;
    episode._episodeNum.value = 3;
    episode.title = "Piloto";
    episode.containerExtension = "mkv";
    episode.season = 2;
    episode.info.emplace();
    episode.info->movieImage = "still";
    episode.info->plot = "not copied";
    const Date before = currentDate();
    const Channel channel = episodeOf(episode);

    Channel expected;
    expected.id = "main_series_77_ep_5012";
    expected.playlistId = "main";
    expected.streamId = 5012;
    expected.name = "Serie - Ep. 3";
    expected.type = "series";
    expected.groupTitle = "Drama";
    expected.logo = "still";
    expected.url = "http://h/series/u/p/5012.mkv";
    expected.seriesId = 77;
    expected.seriesName = "Serie";
    expected.seasonNum = 2;
    expected.episodeNum = 3;
    expected.episodeTitle = "Piloto";
    expected.containerExtension = "mkv";
    expected.addedAt = channel.addedAt;
    EXPECT_EQ(channel, expected);
    EXPECT_GE(channel.addedAt, before);
    EXPECT_LE(channel.addedAt, currentDate());
}

TEST(Episode, hasAnExtensionOfMp4ByDefault) {
    EXPECT_EQ(episodeOf({}).containerExtension, "mp4");
    EXPECT_EQ(episodeOf({}).url, "http://h/series/u/p/5012.mp4");
}

TEST(Episode, keepsAnExtensionThatIsEmpty) {
    XtreamEpisode episode;
    episode.containerExtension = "";
    EXPECT_EQ(episodeOf(episode).containerExtension, "");
    EXPECT_EQ(episodeOf(episode).url, "http://h/series/u/p/5012.");
}

TEST(Episode, keepsAnIdThatIsNoNumberInItsIdAndURL) {
    for (const char* episodeId : {"abc", "", "12x", "99999999999999999999"}) {
        const Channel channel = episodeOf({}, episodeId);
        EXPECT_EQ(channel.streamId, 0);
        EXPECT_EQ(channel.id, std::string("main_series_77_ep_") + episodeId);
        EXPECT_EQ(channel.url, std::string("http://h/series/u/p/") + episodeId + ".mp4");
    }
}

TEST(Episode, isCalledNumberZeroWithoutANumber) {
    EXPECT_EQ(episodeOf({}).name, "Serie - Ep. 0");
    EXPECT_EQ(episodeOf({}).episodeNum, std::nullopt);
}

TEST(Episode, showsThePosterOfItsSeriesWithoutAnImage) {
    XtreamEpisode episode;
    EXPECT_EQ(episodeOf(episode).logo, "poster");
    episode.info.emplace();
    EXPECT_EQ(episodeOf(episode).logo, "poster");
    episode.info->movieImage = "";
    EXPECT_EQ(episodeOf(episode).logo, "");
}

} // namespace
} // namespace ondavia
