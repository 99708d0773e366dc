#include "PlayerFixture.h"
#include "playback/PlayerManager.h"

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PlayerViewModelTest : public PlayerFixture {
protected:
    const std::string url = "http://tv.example/movie/1";
};

TEST_F(PlayerViewModelTest, PlaysTheSessionsItemOnceWhenPresented) {
    playFilm();
    EXPECT_EQ(count("create " + url), 1);
    EXPECT_EQ(player().title(), QStringLiteral("Uma Longa Noite"));
    EXPECT_EQ(player().episodeLine(), QString());
    EXPECT_FALSE(player().offersNextEpisode());
}

TEST_F(PlayerViewModelTest, AppearingTurnsTheScreenReadsTheLevelsAndThenPlays) {
    screenBrightness.level = 0.8;
    audio.volume = 0.25F;
    playFilm();
    const Qt::ScreenOrientations landscape{Qt::LandscapeOrientation, Qt::InvertedLandscapeOrientation};
    EXPECT_EQ(AppDelegate::supportedInterfaceOrientations(), landscape);
    EXPECT_DOUBLE_EQ(player().levels()->brightness()->value(), 0.8);
    EXPECT_DOUBLE_EQ(player().levels()->volume()->value(), 0.25);
    EXPECT_TRUE(player().controls()->showControls());
    player().close();
    EXPECT_EQ(AppDelegate::supportedInterfaceOrientations(), Qt::ScreenOrientations(Qt::PortraitOrientation));
}

TEST_F(PlayerViewModelTest, WithoutAScreenOfKnownBrightnessTheMirrorStaysInTheMiddle) {
    screenBrightness.level.reset();
    playFilm();
    EXPECT_DOUBLE_EQ(player().levels()->brightness()->value(), 0.5);
}

TEST_F(PlayerViewModelTest, SaysWhenTheFirstPictureIsLongInComing) {
    playFilm();
    scheduler.advance(11);
    EXPECT_FALSE(player().isSlow()) << "it plays";
    playerManager.setIsPlaying(false);
    playerManager.setIsBuffering(true);
    scheduler.advance(9.9);
    EXPECT_FALSE(player().isSlow());
    scheduler.advance(0.2);
    EXPECT_TRUE(player().isSlow());
    playerManager.setIsPlaying(true);
    EXPECT_FALSE(player().isSlow());
}

TEST_F(PlayerViewModelTest, WhatStandsStillShowsItsControls) {
    playFilm();
    scheduler.advance(5.1);
    ASSERT_FALSE(player().controls()->showControls());
    playerManager.setIsPlaying(false);
    EXPECT_TRUE(player().controls()->showControls());
}

TEST_F(PlayerViewModelTest, OnlyAnEpisodeHasAKeyForTheNextOne) {
    playFilm();
    EXPECT_FALSE(player().keys()->press(Qt::Key_N, false));
    player().close();
    playSeries();
    EXPECT_TRUE(player().keys()->press(Qt::Key_N, false));
}

TEST_F(PlayerViewModelTest, AnItemNeverWatchedStartsAtTheBeginning) {
    playFilm();
    EXPECT_EQ(playerManager.pendingStartPosition(), 0);
}

TEST_F(PlayerViewModelTest, AnItemKeptAtItsBeginningStartsThere) {
    keep("main_1", 0, 100);
    playFilm();
    EXPECT_EQ(playerManager.pendingStartPosition(), 0);
}

TEST_F(PlayerViewModelTest, ResumesWhereTheItemWasLeftOnceTheFirstFrameIsThere) {
    keep("main_1", 1234.5, 6000);
    playFilm();
    EXPECT_EQ(player().startPosition(), 1234.5);
    EXPECT_EQ(count("seek 1235"), 0);
    engine().post(FSPlayerFirstVideoFrameRenderedNotification);
    drainEvents();
    EXPECT_EQ(count("seek 1235") + count("seek 1234"), 1);
}

TEST_F(PlayerViewModelTest, AnItemSeenToItsEndResumesNearItsEnd) {
    keep("main_1", 5900, 6000);
    playFilm();
    EXPECT_EQ(playerManager.pendingStartPosition(), 5900);
}

TEST_F(PlayerViewModelTest, RecordsProgressEveryFiveSecondsAfterTheFirstTen) {
    playFilm();
    reach(10, 100);
    scheduler.advance(5);
    EXPECT_FALSE(row("main_1"));
    reach(10.5, 100);
    scheduler.advance(5);
    ASSERT_TRUE(row("main_1"));
    EXPECT_EQ(row("main_1")->position, 10.5);
    EXPECT_EQ(row("main_1")->title, "Uma Longa Noite");
    EXPECT_EQ(row("main_1")->type, "movie");
    EXPECT_FALSE(row("main_1")->isComplete);
}

TEST_F(PlayerViewModelTest, LeavingInTheFirstTenSecondsLeavesNoRecord) {
    playFilm();
    reach(10, 100);
    player().close();
    EXPECT_FALSE(row("main_1")) << "exactly ten is not enough";
}

TEST_F(PlayerViewModelTest, LeavingAfterwardsRecordsAlsoTheLastTwentieth) {
    playFilm();
    reach(99, 100);
    scheduler.advance(5);
    EXPECT_FALSE(row("main_1")) << "the timer is silent there";
    player().close();
    ASSERT_TRUE(row("main_1"));
    EXPECT_EQ(row("main_1")->position, 99);
    EXPECT_TRUE(row("main_1")->isComplete);
}

TEST_F(PlayerViewModelTest, LeavingWithoutAKnownLengthRecordsNothing) {
    playFilm();
    reach(50, 0);
    player().close();
    EXPECT_FALSE(row("main_1"));
}

TEST_F(PlayerViewModelTest, HandsTheWaitingSubtitlesOverOnce) {
    appState.setPendingSubtitleURLs({"http://tv.example/a.srt", "http://tv.example/b.srt"});
    playFilm();
    EXPECT_THAT(appState.pendingSubtitleURLs(), IsEmpty());
    EXPECT_EQ(count("add http://tv.example/a.srt") + count("add http://tv.example/b.srt"), 2);
    player().retry();
    scheduler.runPending();
    EXPECT_EQ(count("add http://tv.example/a.srt") + count("add http://tv.example/b.srt"), 2);
}

TEST_F(PlayerViewModelTest, LeavingEndsPlaybackAndSession) {
    playFilm();
    player().close();
    EXPECT_EQ(count("shutdown " + url), 1);
    EXPECT_FALSE(appState.isPlaying());
    EXPECT_FALSE(appState.currentChannel());
    EXPECT_FALSE(presentation.isPresented());
}

TEST_F(PlayerViewModelTest, ASessionEndedElsewhereEndsPlaybackAndIsRecorded) {
    playFilm();
    reach(40, 100);
    appState.setCurrentChannel(std::nullopt);
    EXPECT_EQ(count("shutdown " + url), 1);
    EXPECT_FALSE(appState.isPlaying());
    EXPECT_EQ(row("main_1")->position, 40);
}

TEST_F(PlayerViewModelTest, MinimisingRecordsAndKeepsPlaying) {
    playFilm();
    reach(30, 100);
    player().minimizeToMini();
    drainEvents();
    EXPECT_FALSE(presentation.isPresented());
    EXPECT_EQ(count("shutdown " + url), 0);
    EXPECT_TRUE(appState.isPlaying());
    EXPECT_TRUE(appState.currentChannel());
    EXPECT_TRUE(appState.showMiniPlayer());
    EXPECT_TRUE(playerManager.isMiniPlayer());
    EXPECT_EQ(row("main_1")->position, 30);
    reach(35, 100);
    scheduler.advance(5);
    EXPECT_EQ(row("main_1")->position, 35) << "it goes on being recorded";
}

TEST_F(PlayerViewModelTest, ExpandingTheMiniPlayerTakesTheRunningPlaybackOver) {
    playFilm();
    reach(30, 100);
    player().minimizeToMini();
    drainEvents();
    appState.setPendingSubtitleURLs({"http://tv.example/a.srt"});
    journal.clear();
    appState.setShowMiniPlayer(false);
    drainEvents();
    ASSERT_TRUE(presentation.isPresented());
    EXPECT_FALSE(playerManager.isMiniPlayer());
    EXPECT_THAT(journal, IsEmpty()) << "the engine hears nothing of it";
    EXPECT_EQ(appState.pendingSubtitleURLs().size(), 1U);
    player().close();
    EXPECT_EQ(count("shutdown " + url), 1);
}

TEST_F(PlayerViewModelTest, AnItemChosenOverTheMiniPlayerIsTheOnlyOnePresented) {
    playFilm();
    player().minimizeToMini();
    drainEvents();
    std::vector<std::string> presented;
    QObject::connect(&presentation, &PlayerPresentation::playerChanged, &presentation, [this, &presented] {
        presented.push_back(presentation.isPresented() ? player().channel().id : "none");
    });
    keep("main_2", 500, 1000);
    appState.playChannel(film(2));
    drainEvents();
    EXPECT_THAT(presented, ElementsAre("main_2"));
    EXPECT_EQ(count("create http://tv.example/movie/2"), 1);
    EXPECT_EQ(playerManager.pendingStartPosition(), 500);
}

TEST_F(PlayerViewModelTest, AnotherItemThanTheMiniPlayersIsPlayedAnew) {
    playerManager.setIsMiniPlayer(true);
    playerManager.setCurrentItem(film(9));
    playFilm();
    EXPECT_EQ(count("create " + url), 1);
}

TEST_F(PlayerViewModelTest, EachPresentationBeginsWithItsOwnChoices) {
    playFilm();
    player().choices().setSkipInterval(30);
    player().choices().setPlaybackSpeed(1.5F);
    EXPECT_EQ(player().speedText(), QStringLiteral("1.5x"));
    player().close();
    drainEvents();
    playFilm();
    EXPECT_EQ(player().skips()->skipInterval(), 10);
    EXPECT_EQ(player().speedText(), QString());
}

TEST_F(PlayerViewModelTest, AnErrorShowsMaskedAndARetryStartsFromTheBeginning) {
    keep("main_1", 900, 1000);
    playFilm();
    playerManager.setError("Falhou: http://tv.example/movie/ana/secret/1.mp4");
    EXPECT_FALSE(player().error().contains(QStringLiteral("secret")));
    EXPECT_TRUE(player().error().startsWith(QStringLiteral("Falhou")));
    player().retry();
    EXPECT_EQ(count("create " + url), 2);
    EXPECT_EQ(playerManager.pendingStartPosition(), 0);
}

TEST_F(PlayerViewModelTest, EscapeTakesTheUppermostLayerAwayFirst) {
    playFilm();
    EXPECT_FALSE(player().closeLayer());
    player().openSettings();
    player().setShowKeys(true);
    EXPECT_TRUE(player().closeLayer());
    EXPECT_FALSE(player().showKeys());
    EXPECT_TRUE(player().showSettings());
    EXPECT_TRUE(player().closeLayer());
    EXPECT_FALSE(player().showSettings());
}

TEST_F(PlayerViewModelTest, LeavingIsPossibleWhileTheEngineStillPrepares) {
    appState.playChannel(film());
    ASSERT_TRUE(playerManager.isBuffering());
    player().close();
    EXPECT_EQ(count("shutdown " + url), 1);
    scheduler.runPending();
    EXPECT_EQ(count("prepare " + url), 0) << "nothing starts behind the viewer's back";
}

} // namespace
} // namespace ondavia::testing
