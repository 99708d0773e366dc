#include "PlayerFixture.h"
#include "playback/PlayerManager.h"

namespace ondavia::testing {
namespace {

class NextEpisodeTest : public PlayerFixture {
protected:
    /// What the second episode is played from.
    const std::string second = "http://tv.example/series/ana/s3cr3t-word/702.mp4";
};

TEST_F(NextEpisodeTest, SaysWhichEpisodePlays) {
    playSeries();
    EXPECT_EQ(player().title(), QStringLiteral("O Faroleiro"));
    EXPECT_EQ(player().episodeLine(), QStringLiteral("Ep. 0"));
    EXPECT_TRUE(player().offersNextEpisode());
    player().playNextEpisode();
    EXPECT_EQ(player().episodeLine(), QStringLiteral("Capítulo 2"));
}

TEST_F(NextEpisodeTest, IsNamedByItsNumberWhereItHasNoTitle) {
    playSeries();
    auto episodes = appState.seriesEpisodes();
    episodes[1].title.reset();
    appState.setSeriesEpisodes(episodes);
    player().playNextEpisode();
    EXPECT_EQ(player().episodeLine(), QStringLiteral("Ep. 2"));
}

TEST_F(NextEpisodeTest, RecordsTheOneThatEndsAndStartsTheNextFromItsBeginning) {
    keep("main_series_70_ep_702", 777, 1000);
    playSeries();
    reach(95, 100);
    player().playNextEpisode();
    scheduler.runPending();
    EXPECT_EQ(row("main_series_70_ep_701")->position, 95);
    EXPECT_TRUE(row("main_series_70_ep_701")->isComplete);
    EXPECT_EQ(appState.currentEpisodeIndex(), 1);
    EXPECT_EQ(appState.currentChannel()->id, "main_series_70_ep_702");
    EXPECT_EQ(count("create " + second), 1);
    EXPECT_EQ(playerManager.pendingStartPosition(), 0) << "what was seen of it before is not asked";
    ASSERT_TRUE(presentation.isPresented());
}

TEST_F(NextEpisodeTest, BringsNoControls) {
    playSeries();
    playerManager.setIsBuffering(false);
    scheduler.advance(5.1);
    ASSERT_FALSE(player().controls()->showControls());
    player().playNextEpisode();
    EXPECT_FALSE(player().controls()->showControls());
}

TEST_F(NextEpisodeTest, IsWhatTheLeavingStepsRecordFromThenOn) {
    playSeries();
    reach(50, 100);
    player().playNextEpisode();
    scheduler.runPending();
    reach(20, 200);
    scheduler.advance(5);
    EXPECT_EQ(row("main_series_70_ep_702")->position, 20);
    EXPECT_EQ(row("main_series_70_ep_702")->type, "series");
    EXPECT_EQ(row("main_series_70_ep_702")->seriesId, 70);
    reach(44, 200);
    player().close();
    EXPECT_EQ(row("main_series_70_ep_702")->position, 44);
    EXPECT_EQ(row("main_series_70_ep_701")->position, 50);
}

TEST_F(NextEpisodeTest, TakesItsSubtitlesAndDropsWhatIsNoUrl) {
    playSeries();
    player().playNextEpisode();
    EXPECT_EQ(count("add http://tv.example/pt.srt"), 1);
    scheduler.runPending();
    journal.clear();
    player().playNextEpisode();
    EXPECT_TRUE(playerManager.loadedSubtitles().empty());
    EXPECT_EQ(count("add http://tv.example/pt.srt"), 0);
}

TEST_F(NextEpisodeTest, EndsWithThePlaylist) {
    playSeries(2);
    EXPECT_FALSE(player().hasNextEpisode());
    EXPECT_FALSE(player().offersNextEpisode());
    journal.clear();
    player().playNextEpisode();
    EXPECT_TRUE(journal.empty());
    EXPECT_EQ(appState.currentEpisodeIndex(), 2);
}

TEST_F(NextEpisodeTest, IsNotOfferedForAFilmOrWithoutAPlaylist) {
    playFilm();
    appState.setSeriesEpisodes(std::vector<XtreamEpisode>(3));
    EXPECT_TRUE(player().hasNextEpisode());
    EXPECT_FALSE(player().offersNextEpisode());
    appState.setSeriesEpisodes({});
    appState.setCurrentEpisodeIndex(-4);
    EXPECT_FALSE(player().hasNextEpisode());
}

TEST_F(NextEpisodeTest, DoesNothingWhereAnythingIsMissing) {
    playSeries();
    journal.clear();
    auto episodes = appState.seriesEpisodes();
    episodes[1].id.reset();
    appState.setSeriesEpisodes(episodes);
    player().playNextEpisode();
    episodes[1].id = "702";
    appState.setSeriesEpisodes(episodes);
    appState.setPassword({});
    player().playNextEpisode();
    appState.setPassword("s3cr3t-word");
    const auto parent = appState.seriesParentChannel();
    appState.setSeriesParentChannel(std::nullopt);
    player().playNextEpisode();
    appState.setSeriesParentChannel(parent);
    appState.setCurrentEpisodeIndex(-9);
    player().playNextEpisode();
    EXPECT_TRUE(journal.empty());
    EXPECT_EQ(appState.toastMessage(), std::nullopt);
    appState.setCurrentEpisodeIndex(0);
    player().playNextEpisode();
    EXPECT_EQ(count("create " + second), 1) << "nothing else was missing";
}

TEST_F(NextEpisodeTest, NeverStartsByItself) {
    playSeries();
    reach(100, 100);
    engine().finish(static_cast<int>(FSFinishReason::PlaybackEnded));
    scheduler.advance(30);
    EXPECT_EQ(count("create " + second), 0);
}

} // namespace
} // namespace ondavia::testing
