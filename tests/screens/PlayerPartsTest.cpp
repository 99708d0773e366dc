// The player's parts, each alone: when the controls show, skips, levels, the seek bar, taps, keys.
#include "PlayerFixture.h"
#include "playback/PlayerManager.h"

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::FloatNear;

class ControlsTest : public PlayerFixture {};

TEST_F(ControlsTest, StepBackFiveSecondsAfterTheyCame) {
    playFilm();
    scheduler.advance(4.9);
    EXPECT_TRUE(player().controls()->showControls());
    scheduler.advance(0.2);
    EXPECT_FALSE(player().controls()->showControls());
}

TEST_F(ControlsTest, StayAsLongAsASliderIsOpenAndFiveSecondsMore) {
    playFilm();
    player().levels()->brightness()->setShowSlider(true);
    scheduler.advance(1.5);
    player().levels()->brightness()->setShowSlider(true);
    scheduler.advance(4);
    for (int second = 0; second < 4; ++second) {
        player().levels()->volume()->setShowSlider(true);
        scheduler.advance(1.9);
    }
    EXPECT_TRUE(player().controls()->showControls());
    player().levels()->volume()->setShowSlider(false);
    player().levels()->brightness()->setShowSlider(false);
    scheduler.advance(4.9);
    EXPECT_TRUE(player().controls()->showControls());
    scheduler.advance(0.2);
    EXPECT_FALSE(player().controls()->showControls());
}

TEST_F(ControlsTest, StayAsLongAsTheSeekBarIsHeldAndFiveSecondsMore) {
    playFilm();
    reach(100, 1000);
    player().seekBar()->drag(100, 400);
    scheduler.advance(12);
    EXPECT_TRUE(player().controls()->showControls());
    player().seekBar()->endDrag(100, 400);
    scheduler.advance(4.9);
    EXPECT_TRUE(player().controls()->showControls());
    scheduler.advance(0.2);
    EXPECT_FALSE(player().controls()->showControls());
}

TEST_F(ControlsTest, StayAsLongAsALevelIsDragged) {
    playFilm();
    SliderButtonModel& volume = *player().levels()->volume();
    volume.press({0, 100});
    volume.moveTo({0, 60});
    scheduler.advance(12);
    EXPECT_TRUE(player().controls()->showControls());
    volume.release();
    scheduler.advance(5.1);
    EXPECT_FALSE(player().controls()->showControls());
}

TEST_F(ControlsTest, AToggleTakesThemAwayAndBringsThemBackForFiveSeconds) {
    playFilm();
    scheduler.advance(3);
    player().controls()->toggleControls();
    EXPECT_FALSE(player().controls()->showControls());
    scheduler.advance(1);
    player().controls()->toggleControls();
    scheduler.advance(4.9);
    EXPECT_TRUE(player().controls()->showControls()) << "the first timer is gone";
    scheduler.advance(0.2);
    EXPECT_FALSE(player().controls()->showControls());
}

TEST_F(ControlsTest, AUseGivesThemAnotherFiveSeconds) {
    playFilm();
    scheduler.advance(4);
    player().controls()->wake();
    scheduler.advance(4);
    EXPECT_TRUE(player().controls()->showControls());
}

class SkipsTest : public PlayerFixture {
protected:
    void SetUp() override { playFilm(); }
    [[nodiscard]] PlayerSkips& skips() { return *player().skips(); }
};

TEST_F(SkipsTest, ThreeDoubleTapsAddUpInTheBadgeAndEachSeeksAtOnce) {
    reach(100, 1000);
    skips().handleDoubleTapSeek(300, 400);
    EXPECT_EQ(playerManager.currentTime(), 110);
    scheduler.advance(0.7);
    skips().handleDoubleTapSeek(300, 400);
    scheduler.advance(0.7);
    skips().handleDoubleTapSeek(200, 400);
    EXPECT_EQ(playerManager.currentTime(), 130);
    EXPECT_EQ(skips().badgeSeconds(), 30);
    EXPECT_EQ(skips().badgeSymbol(), QStringLiteral("goforward.30"));
    EXPECT_EQ(skips().seekDirection(), QStringLiteral("forward"));
    scheduler.advance(0.7);
    EXPECT_EQ(skips().seekDirection(), QStringLiteral("forward"));
    scheduler.advance(0.2);
    EXPECT_EQ(skips().seekDirection(), QString());
    EXPECT_EQ(skips().accumulatedSeek(), 0);
}

TEST_F(SkipsTest, AChangeOfSideCountsAfresh) {
    reach(100, 1000);
    for (const double location : {300.0, 100.0, 300.0}) {
        skips().handleDoubleTapSeek(location, 400);
        EXPECT_EQ(skips().badgeSeconds(), 10);
    }
    skips().handleDoubleTapSeek(199.9, 400);
    EXPECT_EQ(skips().seekDirection(), QStringLiteral("backward"));
    EXPECT_EQ(skips().badgeSymbol(), QStringLiteral("gobackward.10"));
}

TEST_F(SkipsTest, ADoubleTapStaysWithinTheFilm) {
    reach(4, 1000);
    skips().handleDoubleTapSeek(0, 400);
    EXPECT_EQ(playerManager.currentTime(), 0);
    reach(995, 1000);
    skips().handleDoubleTapSeek(400, 400);
    EXPECT_EQ(playerManager.currentTime(), 1000);
}

TEST_F(SkipsTest, ADoubleTapForwardWithoutALengthSeeksNothingAndShowsTheBadge) {
    journal.clear();
    skips().handleDoubleTapSeek(400, 400);
    EXPECT_TRUE(journal.empty());
    EXPECT_EQ(skips().badgeSeconds(), 10);
    EXPECT_EQ(skips().seekDirection(), QStringLiteral("forward"));
}

TEST_F(SkipsTest, TheButtonBackStopsAtTheBeginningAndTheOneForwardDoesNothingBeyondTheEnd) {
    reach(4, 1000);
    skips().back();
    EXPECT_EQ(playerManager.currentTime(), 0);
    skips().forward();
    EXPECT_EQ(playerManager.currentTime(), 10);
    reach(995, 1000);
    journal.clear();
    skips().forward();
    EXPECT_TRUE(journal.empty());
    EXPECT_EQ(playerManager.currentTime(), 995);
    EXPECT_EQ(skips().seekDirection(), QString()) << "buttons have no badge";
}

TEST_F(SkipsTest, FollowTheChosenInterval) {
    reach(100, 1000);
    player().choices().setSkipInterval(60);
    EXPECT_EQ(skips().forwardSymbol(), QStringLiteral("goforward.45"));
    EXPECT_EQ(skips().backSymbol(), QStringLiteral("gobackward.45"));
    skips().forward();
    EXPECT_EQ(playerManager.currentTime(), 160);
    skips().handleDoubleTapSeek(0, 400);
    EXPECT_EQ(playerManager.currentTime(), 100);
    EXPECT_EQ(skips().badgeSeconds(), 60);
}

TEST(SkipSymbol, IsTheNearestOfThoseThatExistAndTheFirstOfTwo) {
    const std::pair<int, const char*> cases[] = {{5, "5"},   {10, "10"}, {15, "15"}, {30, "30"}, {45, "45"},
                                                 {75, "75"}, {90, "90"}, {60, "45"}, {20, "15"}, {40, "45"},
                                                 {7, "5"},   {12, "10"}, {0, "5"},   {900, "90"}};
    for (const auto& [seconds, drawn] : cases) {
        EXPECT_EQ(PlayerSkips::skipSymbol(seconds, true), QStringLiteral("goforward.") + QLatin1String(drawn))
            << seconds;
    }
    EXPECT_EQ(PlayerSkips::skipSymbol(30, false), QStringLiteral("gobackward.30"));
}

class LevelsTest : public PlayerFixture {
protected:
    void SetUp() override { playFilm(); }
    [[nodiscard]] PlayerLevels& levels() { return *player().levels(); }
};

TEST_F(LevelsTest, FollowTheSystemsVolumeTwiceASecondWhereItDiffersEnough) {
    audio.volume = 0.505F;
    scheduler.advance(0.5);
    EXPECT_DOUBLE_EQ(levels().volume()->value(), 0.5);
    audio.volume = 0.75F;
    scheduler.advance(0.4);
    EXPECT_DOUBLE_EQ(levels().volume()->value(), 0.5);
    scheduler.advance(0.1);
    EXPECT_DOUBLE_EQ(levels().volume()->value(), 0.75);
    EXPECT_TRUE(systemVolume.asked.empty()) << "a mirror sets nothing";
}

TEST_F(LevelsTest, FollowTheScreensBrightnessAsItChanges) {
    screenBrightness.change(0.3);
    EXPECT_DOUBLE_EQ(levels().brightness()->value(), 0.3);
    player().close();
    play(film(2));
    drainEvents();
    screenBrightness.change(0.6);
    EXPECT_DOUBLE_EQ(levels().brightness()->value(), 0.6) << "who has gone takes nothing from who came after";
}

TEST_F(LevelsTest, AStepGoesFromWhatTheOutputHasNow) {
    audio.volume = 0.75F;
    ASSERT_DOUBLE_EQ(levels().volume()->value(), 0.5) << "the mirror is older";
    levels().changeVolume(1);
    EXPECT_THAT(systemVolume.asked, ElementsAre(FloatNear(0.8F, 1e-6F)));
}

TEST_F(LevelsTest, AKeyOrTheWheelChangesTheVolumeByStepsWithinItsRange) {
    levels().changeVolume(1);
    EXPECT_THAT(systemVolume.asked.back(), FloatNear(0.55F, 1e-6F));
    EXPECT_TRUE(levels().showVolumeBadge());
    levels().changeVolume(100);
    EXPECT_EQ(systemVolume.asked.back(), 1.0F);
    levels().changeVolume(-100);
    EXPECT_EQ(systemVolume.asked.back(), 0.0F);
    scheduler.advance(0.9);
    EXPECT_TRUE(levels().showVolumeBadge());
    scheduler.advance(0.2);
    EXPECT_FALSE(levels().showVolumeBadge());
}

class SeekBarTest : public PlayerFixture {
protected:
    void SetUp() override { playFilm(); }
    [[nodiscard]] VODSeekBarModel& bar() { return *player().seekBar(); }
};

TEST_F(SeekBarTest, IsDrawnOnceTheLengthIsKnown) {
    EXPECT_FALSE(bar().isDrawn());
    EXPECT_EQ(bar().fraction(), 0);
    reach(25, 100);
    EXPECT_TRUE(bar().isDrawn());
    EXPECT_EQ(bar().fraction(), 0.25);
    EXPECT_EQ(bar().positionText(), QStringLiteral("00:25"));
    EXPECT_EQ(bar().durationText(), QStringLiteral("01:40"));
    reach(101, 100);
    EXPECT_EQ(bar().fraction(), 1.0);
}

TEST_F(SeekBarTest, ADragShowsTheTargetAndTheEngineHearsOfItAtTheEnd) {
    reach(10, 200);
    journal.clear();
    bar().drag(100, 400);
    EXPECT_TRUE(bar().isSeeking());
    EXPECT_EQ(bar().shownTime(), 50);
    EXPECT_EQ(bar().positionText(), QStringLiteral("00:50"));
    bar().drag(200, 400);
    reach(12, 200);
    EXPECT_EQ(bar().fraction(), 0.5);
    EXPECT_TRUE(journal.empty());
    bar().endDrag(300, 400);
    EXPECT_THAT(journal, ElementsAre("seek 150"));
    EXPECT_FALSE(bar().isSeeking());
    EXPECT_EQ(bar().shownTime(), 150);
}

TEST_F(SeekBarTest, ADragBeyondTheEndsReachesTheEnds) {
    reach(10, 200);
    bar().drag(-50, 400);
    EXPECT_EQ(bar().seekTarget(), 0);
    bar().drag(900, 400);
    EXPECT_EQ(bar().seekTarget(), 200);
    bar().endDrag(900, 400);
    EXPECT_EQ(playerManager.currentTime(), 200);
}

TEST_F(SeekBarTest, ADragThatIsTakenAwayMovesNothing) {
    reach(10, 200);
    journal.clear();
    bar().drag(100, 400);
    bar().cancelDrag();
    EXPECT_EQ(bar().shownTime(), 10);
    EXPECT_TRUE(journal.empty());
}

TEST(FormatTime, ReadsAsAClock) {
    EXPECT_EQ(VODSeekBarModel::formatTime(0), QStringLiteral("00:00"));
    EXPECT_EQ(VODSeekBarModel::formatTime(307.9), QStringLiteral("05:07"));
    EXPECT_EQ(VODSeekBarModel::formatTime(3599.9), QStringLiteral("59:59"));
    EXPECT_EQ(VODSeekBarModel::formatTime(3600), QStringLiteral("1:00:00"));
    EXPECT_EQ(VODSeekBarModel::formatTime(36000 + 61), QStringLiteral("10:01:01"));
}

class TapsTest : public PlayerFixture {
protected:
    void SetUp() override {
        playFilm();
        reach(100, 1000);
    }
    void tap(double x, double y = 100) { player().taps()->tap(x, y, 400); }
};

TEST_F(TapsTest, ASingleTapTogglesTheControlsOnceNoSecondOneCanFollow) {
    tap(50);
    EXPECT_TRUE(player().controls()->showControls());
    scheduler.advance(0.31);
    EXPECT_FALSE(player().controls()->showControls());
    tap(50);
    scheduler.advance(0.31);
    EXPECT_TRUE(player().controls()->showControls());
    EXPECT_EQ(playerManager.currentTime(), 100);
}

TEST_F(TapsTest, ADoubleTapSeeksAndLeavesTheControlsAlone) {
    tap(390);
    scheduler.advance(0.2);
    tap(380);
    EXPECT_EQ(playerManager.currentTime(), 110);
    scheduler.advance(1);
    EXPECT_TRUE(player().controls()->showControls());
}

TEST_F(TapsTest, TapsFarFromEachOtherAreTwoSingleOnes) {
    tap(20);
    tap(390);
    scheduler.advance(0.31);
    EXPECT_EQ(playerManager.currentTime(), 100);
    EXPECT_TRUE(player().controls()->showControls()) << "away and back";
}

class KeysTest : public PlayerFixture {
protected:
    bool press(int key, bool again = false) { return player().keys()->press(key, again); }
};

TEST_F(KeysTest, SteerTheFilm) {
    playFilm();
    reach(100, 1000);
    for (const int key : {Qt::Key_Space, Qt::Key_K, Qt::Key_MediaPause}) {
        const bool played = playerManager.isPlaying();
        EXPECT_TRUE(press(key));
        EXPECT_NE(playerManager.isPlaying(), played);
    }
    press(Qt::Key_Right);
    press(Qt::Key_L);
    EXPECT_EQ(playerManager.currentTime(), 120);
    EXPECT_EQ(player().skips()->badgeSeconds(), 20);
    press(Qt::Key_Left);
    press(Qt::Key_J);
    press(Qt::Key_J);
    EXPECT_EQ(playerManager.currentTime(), 90);
    press(Qt::Key_Up);
    EXPECT_THAT(systemVolume.asked.back(), FloatNear(0.55F, 1e-6F));
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_THAT(systemVolume.asked.back(), FloatNear(0.45F, 1e-6F));
    press(Qt::Key_M);
    EXPECT_TRUE(playerManager.isMuted());
    press(Qt::Key_S);
    EXPECT_TRUE(player().showSettings());
    press(Qt::Key_S);
    EXPECT_FALSE(player().showSettings());
    press(Qt::Key_I);
    EXPECT_TRUE(player().information()->isShown());
    press(Qt::Key_I);
    EXPECT_FALSE(player().information()->isShown());
    press(Qt::Key_Question);
    EXPECT_TRUE(player().showKeys());
    EXPECT_FALSE(press(Qt::Key_Q));
}

TEST_F(KeysTest, HeldDownRepeatOnlyWhatMovesBySteps) {
    playFilm();
    reach(100, 1000);
    press(Qt::Key_Right);
    press(Qt::Key_Right, true);
    EXPECT_EQ(playerManager.currentTime(), 120);
    press(Qt::Key_M);
    EXPECT_TRUE(press(Qt::Key_M, true));
    EXPECT_TRUE(playerManager.isMuted());
}

TEST_F(KeysTest, StepToTheNextEpisodeWhereThereIsOne) {
    playFilm();
    journal.clear();
    press(Qt::Key_N);
    EXPECT_TRUE(journal.empty());
    player().close();
    drainEvents();
    playSeries();
    press(Qt::Key_N);
    EXPECT_EQ(appState.currentEpisodeIndex(), 1);
}

TEST_F(KeysTest, AreListedEachWithItsAction) {
    playSeries();
    std::vector<std::string> names;
    for (const QVariant& line : player().keys()->lines()) {
        names.push_back(line.toMap().value(QStringLiteral("keys")).toString().toStdString());
        EXPECT_FALSE(line.toMap().value(QStringLiteral("action")).toString().isEmpty());
    }
    EXPECT_THAT(names, ::testing::IsSupersetOf(
                           {"Espaço, K", "←, J", "→, L", "↑", "↓", "M", "N", "F", "S", "I", "?", "Esc"}));
}

} // namespace
} // namespace ondavia::testing
