#include "screens/player/PlayerViewModel.h"
#include "ScreensFixture.h"

#include <limits>

namespace ondavia::testing {
namespace {

class PlayerViewModelTest : public ScreensFixture {
protected:
    long count(const std::string& line) const { return std::ranges::count(journal, line); }
    /// Opens a session and lets the engine run.
    void play(const std::string& type = "movie") {
        appState.playChannel(title(1, type, "Drama", "Uma Longa Noite"));
        scheduler.runPending();
        playerManager.setIsPlaying(true);
    }
    const std::string url = "http://tv.example/movie/1";
    PlayerViewModel model{appState, playerManager, content, scheduler};
};

TEST_F(PlayerViewModelTest, PlaysTheSessionsItemOnceWhenPresented) {
    play();
    EXPECT_EQ(count("create " + url), 1);
    EXPECT_EQ(model.title(), QStringLiteral("Uma Longa Noite"));
    EXPECT_EQ(model.subtitle(), QStringLiteral("Drama"));
}

TEST_F(PlayerViewModelTest, LeavingEndsPlaybackAndSession) {
    play();
    model.leave();
    EXPECT_EQ(count("shutdown " + url), 1);
    EXPECT_FALSE(appState.isPlaying());
    EXPECT_FALSE(appState.currentChannel());
    EXPECT_FALSE(content.presentsPlayer());
}

TEST_F(PlayerViewModelTest, ShrinkingIntoTheMiniPlayerKeepsPlaying) {
    play();
    appState.setShowMiniPlayer(true);
    drainEvents();
    EXPECT_FALSE(content.presentsPlayer());
    EXPECT_EQ(count("shutdown " + url), 0);
    EXPECT_TRUE(appState.isPlaying());
}

TEST_F(PlayerViewModelTest, ASessionEndedElsewhereEndsPlayback) {
    play();
    appState.setCurrentChannel(std::nullopt);
    EXPECT_EQ(count("shutdown " + url), 1);
}

TEST_F(PlayerViewModelTest, ControlsHideAfterFiveSecondsOfPlaying) {
    play();
    scheduler.advance(4.9);
    EXPECT_TRUE(model.showsControls());
    scheduler.advance(0.2);
    EXPECT_FALSE(model.showsControls());
}

TEST_F(PlayerViewModelTest, WakingTheControlsGivesThemAnotherFiveSeconds) {
    play();
    scheduler.advance(4);
    model.wakeControls();
    scheduler.advance(4);
    EXPECT_TRUE(model.showsControls());
    scheduler.advance(1.1);
    EXPECT_FALSE(model.showsControls());
    model.toggleControls();
    EXPECT_TRUE(model.showsControls());
    model.toggleControls();
    EXPECT_FALSE(model.showsControls());
}

TEST_F(PlayerViewModelTest, ControlsStayWhileNothingPlays) {
    play();
    playerManager.setIsPlaying(false);
    scheduler.advance(20);
    EXPECT_TRUE(model.showsControls());
}

TEST_F(PlayerViewModelTest, AnErrorShowsMaskedAndBringsTheControlsBack) {
    play();
    scheduler.advance(6);
    ASSERT_FALSE(model.showsControls());
    playerManager.setError("Falhou: http://tv.example/movie/ana/secret/1.mp4");
    EXPECT_FALSE(model.error().contains(QStringLiteral("secret")));
    EXPECT_TRUE(model.error().startsWith(QStringLiteral("Falhou")));
    EXPECT_TRUE(model.showsControls());
    model.retry();
    EXPECT_EQ(count("create " + url), 2);
}

TEST_F(PlayerViewModelTest, SeeksInFilmsOnly) {
    play();
    playerManager.setDuration(3600);
    EXPECT_TRUE(model.canSeek());
    playerManager.setIsLive(true);
    EXPECT_FALSE(model.canSeek());
}

TEST(ClockText, ReadsAsAClock) {
    EXPECT_EQ(clockText(0), QStringLiteral("0:00"));
    EXPECT_EQ(clockText(307.9), QStringLiteral("5:07"));
    EXPECT_EQ(clockText(3599), QStringLiteral("59:59"));
    EXPECT_EQ(clockText(3907), QStringLiteral("1:05:07"));
    EXPECT_EQ(clockText(-1), QStringLiteral("0:00"));
    EXPECT_EQ(clockText(std::numeric_limits<double>::quiet_NaN()), QStringLiteral("0:00"));
    EXPECT_EQ(clockText(std::numeric_limits<double>::infinity()), QStringLiteral("0:00"));
}

} // namespace
} // namespace ondavia::testing
