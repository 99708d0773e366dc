// Which episode plays, and what the player is told of the others.
#include "SeriesFixture.h"

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SeriesDetailPlayTest : public SeriesFixture {
protected:
    SeriesDetailViewModel model{detailServices(), series()};

    /// As this answer has it.
    void load(const std::string& answer = twoSeasons) {
        provider.answer(answer);
        SeriesFixture::load(model);
    }
    [[nodiscard]] XtreamEpisode episode(const std::string& id) {
        const auto all = model.allEpisodesSorted();
        return *std::ranges::find(all, std::optional(id), &XtreamEpisode::id);
    }
    [[nodiscard]] static WatchHistory watched(const std::string& id) {
        return {"main", id, 300, 2400, "series"};
    }
};

TEST_F(SeriesDetailPlayTest, PlaysTheFirstEpisodeOfTheFirstSeason) {
    load();
    model.play();
    EXPECT_EQ(playing(), "main_series_70_ep_11");
    EXPECT_THAT(ids(appState.seriesEpisodes()), ElementsAre("91", "12", "11", "21"));
    EXPECT_EQ(appState.currentEpisodeIndex(), 2);
    EXPECT_EQ(appState.seriesParentChannel(), series());
    EXPECT_TRUE(appState.isPlaying());
    EXPECT_EQ(appState.currentChannel()->url, provider.url() + "/series/ana/s3cr3t-word/11.mp4");
}

TEST_F(SeriesDetailPlayTest, AnEpisodeWithoutSeasonOrNumberIsBeforeTheOthers) {
    load(R"({"episodes": {"1": [{"id": "a", "season": 1, "episode_num": 1}, {"id": "b", "episode_num": 9}],
                          "2": [{"id": "c"}]}})");
    model.play();
    EXPECT_EQ(playing(), "main_series_70_ep_c");
}

TEST_F(SeriesDetailPlayTest, AFirstEpisodeWithoutAnIdCannotBePlayed) {
    load(
        R"({"episodes": {"1": [{"season": 1, "episode_num": 1}, {"id": "b", "season": 1, "episode_num": 2}]}})");
    model.play();
    EXPECT_FALSE(appState.isPlaying());
    model.episodeList()->play(0);
    EXPECT_FALSE(appState.isPlaying());
    model.episodeList()->play(1);
    EXPECT_EQ(playing(), "main_series_70_ep_b");
}

TEST_F(SeriesDetailPlayTest, WithoutEpisodesNothingPlays) {
    model.play();
    EXPECT_FALSE(appState.isPlaying()) << "no answer yet";
    load(R"({"seasons": [{"season_number": 1}]})");
    model.play();
    load(R"({"episodes": {}})");
    model.play();
    load(R"({"episodes": {"1": []}})");
    model.play();
    EXPECT_FALSE(appState.isPlaying());
}

TEST_F(SeriesDetailPlayTest, GoesOnWithTheEpisodeWatchedLast) {
    watch("main_series_70_ep_12", "series", 300, 2400, 70);
    load();
    model.play();
    EXPECT_EQ(playing(), "main_series_70_ep_12");
    EXPECT_EQ(appState.currentEpisodeIndex(), 1);
    EXPECT_THAT(appState.pendingSubtitleURLs(),
                ElementsAre("http://s.example/pt.srt", "http://s.example/en.srt"));
}

TEST_F(SeriesDetailPlayTest, AnEpisodeThatHasGoneGivesWayToTheFirst) {
    load();
    model.playEpisodeFromHistory(watched("main_series_70_ep_99"));
    EXPECT_EQ(playing(), "main_series_70_ep_11");
}

TEST_F(SeriesDetailPlayTest, TheHistoryOfAnotherSeriesIsNotTakenForAnEpisodeOfThisOne) {
    load();
    model.playEpisodeFromHistory(watched("main_series_7_ep_12"));
    EXPECT_EQ(playing(), "main_series_70_ep_11");
}

TEST_F(SeriesDetailPlayTest, AnEpisodeWithoutAnIdIsPassedOverInTheHistory) {
    load(R"({"episodes": {"1": [{"season": 0}, {"id": "5", "season": 1}]}})");
    model.playEpisodeFromHistory(watched("main_series_70_ep_5"));
    EXPECT_EQ(playing(), "main_series_70_ep_5");
    EXPECT_EQ(appState.currentEpisodeIndex(), 1);
}

TEST_F(SeriesDetailPlayTest, ASeriesWithoutEpisodesAtAllGoesOnWithNothing) {
    load(R"({"episodes": {}})");
    model.playEpisodeFromHistory(watched("main_series_70_ep_5"));
    EXPECT_FALSE(appState.isPlaying());
}

TEST_F(SeriesDetailPlayTest, WithoutAnAnswerTheStoredItemPlays) {
    watch("main_series_70_ep_12", "series", 300, 2400, 70);
    Channel stored = title(12, "series", "Drama", "O Faroleiro - Ep. 2");
    stored.id = "main_series_70_ep_12";
    fill({stored});
    provider.answer("no", 500);
    SeriesFixture::load(model);
    ASSERT_TRUE(model.continues());
    model.play();
    EXPECT_EQ(appState.currentChannel(), stored);
    EXPECT_THAT(appState.seriesEpisodes(), IsEmpty()) << "the player knows of no next one";
}

TEST_F(SeriesDetailPlayTest, WithoutAnAnswerAndWithoutAnItemNothingPlays) {
    model.playEpisodeFromHistory(watched("main_series_70_ep_12"));
    EXPECT_FALSE(appState.isPlaying());
    load(R"({"seasons": [{"season_number": 1}], "episodes": "none"})");
    model.playEpisodeFromHistory(watched("main_series_70_ep_12"));
    EXPECT_FALSE(appState.isPlaying());
}

TEST_F(SeriesDetailPlayTest, TheListAndTheHistoryGiveTheSameOrder) {
    load();
    model.chooseSeason(1);
    model.episodeList()->play(0);
    const auto fromList = appState.seriesEpisodes();
    const auto place = appState.currentEpisodeIndex();
    EXPECT_EQ(playing(), "main_series_70_ep_12");
    appState.playerDismissed();
    model.playEpisodeFromHistory(watched("main_series_70_ep_12"));
    EXPECT_EQ(appState.seriesEpisodes(), fromList);
    EXPECT_EQ(appState.currentEpisodeIndex(), place);
}

TEST_F(SeriesDetailPlayTest, AnEpisodeThatIsNoneOfTheListIsTheFirstInIt) {
    load();
    XtreamEpisode stranger;
    stranger.id = "404";
    model.playEpisodeDirectly(stranger);
    EXPECT_EQ(playing(), "main_series_70_ep_404");
    EXPECT_EQ(appState.currentEpisodeIndex(), 0);
}

TEST_F(SeriesDetailPlayTest, OfTwoEpisodesOfOneIdTheFirstOneCounts) {
    load(R"({"episodes": {"1": [{"id": "5"}], "2": [{"id": "6"}, {"id": "5"}]}})");
    model.setSelectedSeason(2);
    model.episodeList()->play(1);
    EXPECT_EQ(appState.currentEpisodeIndex(), 0);
}

TEST_F(SeriesDetailPlayTest, AnEpisodeWithoutSubtitlesLeavesNoneOfAnother) {
    load();
    appState.setPendingSubtitleURLs({"http://s.example/old.srt"});
    model.playEpisodeDirectly(episode("21"));
    EXPECT_THAT(appState.pendingSubtitleURLs(), IsEmpty());
}

TEST_F(SeriesDetailPlayTest, WithoutAnAccountNothingPlaysAndNothingChanges) {
    load();
    appState.setPassword("");
    appState.setPendingSubtitleURLs({"http://s.example/old.srt"});
    model.playEpisodeDirectly(episode("12"));
    EXPECT_FALSE(appState.isPlaying());
    EXPECT_THAT(appState.pendingSubtitleURLs(), ElementsAre("http://s.example/old.srt"));
}

TEST_F(SeriesDetailPlayTest, ARowOutsideOfTheListPlaysNothing) {
    load();
    model.episodeList()->play(-1);
    model.episodeList()->play(1);
    EXPECT_FALSE(appState.isPlaying());
}

TEST_F(SeriesDetailPlayTest, ARowWithoutAnActionPlaysItsEpisodeAlone) {
    load();
    const Channel parent = series();
    const XtreamEpisode second = episode("12");
    EpisodeRow(second, parent).tap(appState, {});
    EXPECT_EQ(playing(), "main_series_70_ep_12");
    EXPECT_THAT(appState.pendingSubtitleURLs(),
                ElementsAre("http://s.example/pt.srt", "http://s.example/en.srt"));
    EXPECT_THAT(appState.seriesEpisodes(), IsEmpty());
    appState.playerDismissed();
    std::vector<std::string> tapped;
    EpisodeRow(second, parent).tap(appState, [&](const XtreamEpisode& it) { tapped.push_back(*it.id); });
    EXPECT_THAT(tapped, ElementsAre("12"));
    EXPECT_FALSE(appState.isPlaying());
}

} // namespace
} // namespace ondavia::testing
