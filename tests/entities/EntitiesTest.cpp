#include "entities/Channel.h"
#include "entities/EPGProgram.h"
#include "entities/Favorite.h"
#include "entities/Playlist.h"
#include "entities/WatchHistory.h"

#include <gtest/gtest.h>

namespace ondavia {
namespace {

using std::chrono::microseconds;
using std::chrono::minutes;

TEST(WatchHistoryProgress, IsZeroWhileTheDurationIsNotKnown) {
    EXPECT_EQ(WatchHistory("main", "main_1", 50, 0, "movie").progress(), 0.0);
    EXPECT_EQ(WatchHistory("main", "main_1", 50, -1, "movie").progress(), 0.0);
}

TEST(WatchHistoryProgress, IsCappedPastTheEnd) {
    EXPECT_EQ(WatchHistory("main", "main_1", 150, 100, "movie").progress(), 100.0);
}

TEST(WatchHistoryProgress, IsAPercentage) {
    EXPECT_DOUBLE_EQ(WatchHistory("main", "main_1", 30, 120, "movie").progress(), 25.0);
}

TEST(WatchHistoryProgress, ReachesTheCompletionRuleAtExactlyNinetyFivePercent) {
    EXPECT_GE(WatchHistory("main", "main_1", 95, 100, "movie").progress(), 95.0);
    EXPECT_GE(WatchHistory("main", "main_1", 6840, 7200, "movie").progress(), 95.0);
    EXPECT_LT(WatchHistory("main", "main_1", 94.999, 100, "movie").progress(), 95.0);
}

TEST(WatchHistory, StartsIncompleteWithTheIdOfProfileAndItem) {
    const Date before = currentDate();
    const WatchHistory history("main", "main_series_77_ep_5012", 1, 2, "series");
    EXPECT_EQ(history.id, "main_main_series_77_ep_5012");
    EXPECT_EQ(history.profileId, "main");
    EXPECT_EQ(history.channelId, "main_series_77_ep_5012");
    EXPECT_EQ(history.type, "series");
    EXPECT_GE(history.lastWatchedAt, before);
    EXPECT_LE(history.lastWatchedAt, currentDate());
    EXPECT_EQ(history.title, "");
    EXPECT_FALSE(history.thumbnailURL);
    EXPECT_FALSE(history.seriesId);
    EXPECT_FALSE(history.isComplete);
}

TEST(Favorite, HasTheIdOfProfileAndItemAndIsAddedNow) {
    const Date before = currentDate();
    const Favorite favorite("main", "main_1234");
    EXPECT_EQ(favorite.id, "main_main_1234");
    EXPECT_EQ(favorite.profileId, "main");
    EXPECT_EQ(favorite.channelId, "main_1234");
    EXPECT_GE(favorite.addedAt, before);
    EXPECT_LE(favorite.addedAt, currentDate());
}

TEST(EPGProgramIsLive, IncludesItsStartAndExcludesItsStop) {
    EPGProgram program;
    program.start = Date(minutes(60));
    program.stop = Date(minutes(90));
    EXPECT_FALSE(program.isLive(program.start - microseconds(1)));
    EXPECT_TRUE(program.isLive(program.start));
    EXPECT_TRUE(program.isLive(program.stop - microseconds(1)));
    EXPECT_FALSE(program.isLive(program.stop));
}

TEST(EPGProgramIsLive, AsksThePresentTimeByDefault) {
    EPGProgram program;
    program.start = currentDate() - minutes(1);
    program.stop = currentDate() + minutes(1);
    EXPECT_TRUE(program.isLive());
    program.stop = currentDate() - microseconds(1);
    EXPECT_FALSE(program.isLive());
}

TEST(Channel, StartsWithEveryOptionalFieldAbsent) {
    const Channel channel;
    EXPECT_FALSE(channel.logo || channel.seriesId || channel.seriesName || channel.seasonNum ||
                 channel.episodeNum || channel.episodeTitle || channel.plot || channel.cast ||
                 channel.director || channel.genre || channel.rating || channel.year || channel.backdrop ||
                 channel.youtubeTrailer || channel.releaseDate || channel.duration ||
                 channel.containerExtension || channel.epgChannelId || channel.tvgName || channel.tvgChno ||
                 channel.lastAccessedAt);
    EXPECT_FALSE(channel.adult || channel.tvArchive);
}

} // namespace
} // namespace ondavia
