#include "PlayerManagerFixture.h"

#include "base/FatalFault.h"

#include <QSignalSpy>

#include <algorithm>

namespace ondavia::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

TEST_F(PlayerManagerTest, PlaysInAFixedOrder) {
    manager->play(movie("http://tv.example/2.mp4"), 30);
    EXPECT_THAT(journal,
                ElementsAre("AVAudioSessionCategoryPlayback AVAudioSessionModeMoviePlayback", "active 1",
                            "create http://tv.example/2.mp4", "scalingMode 0", "autoplay 1"));
    EXPECT_EQ(scheduler.activeTimers(), 0);
    scheduler.runPending();
    EXPECT_EQ(journal.back(), "prepare http://tv.example/2.mp4");
    EXPECT_EQ(scheduler.activeTimers(), 2);
}

TEST_F(PlayerManagerTest, HasItsFieldsSetWhenItAsksForSoundAndForAnEngine) {
    start(liveChannel());
    manager->setRetryCount(3);
    int checks = 0;
    const auto check = [&] {
        ++checks;
        EXPECT_EQ(manager->lastOpenedURL(), movie().url);
        EXPECT_EQ(manager->currentItem(), movie());
        EXPECT_FALSE(manager->isLive());
        EXPECT_EQ(manager->error(), std::nullopt);
        EXPECT_EQ(manager->retryCount(), 0);
        EXPECT_TRUE(manager->isBuffering());
        EXPECT_EQ(manager->pendingStartPosition(), 30);
        EXPECT_FALSE(manager->hasLoggedFirstFrameTracks());
        EXPECT_FALSE(manager->isPlaying());
        EXPECT_EQ(manager->player(), nullptr);
    };
    audio.onCategory = check;
    onCreate = check;
    // Whoever hears of the stop may write to these once more.
    QObject::connect(manager.get(), &PlayerManager::currentSubtitleTrackChanged, manager.get(), [this] {
        manager->setError("late");
        manager->setHasLoggedFirstFrameTracks(true);
    });
    manager->setCurrentSubtitleTrack(SubtitleTrack{});
    manager->play(movie(), 30);
    EXPECT_EQ(checks, 2);
    EXPECT_EQ(manager->player(), lastEngine.lock());
}

TEST_F(PlayerManagerTest, StartsIdle) {
    EXPECT_EQ(manager->player(), nullptr);
    EXPECT_EQ(manager->currentItem(), std::nullopt);
    EXPECT_FALSE(manager->isPlaying());
    EXPECT_EQ(manager->currentTime(), 0);
    EXPECT_EQ(manager->duration(), 0);
    EXPECT_FALSE(manager->isLive());
    EXPECT_FALSE(manager->isBuffering());
    EXPECT_EQ(manager->tracksNonce(), 0);
    EXPECT_FALSE(manager->isMuted());
    EXPECT_EQ(manager->error(), std::nullopt);
    EXPECT_FALSE(manager->isMiniPlayer());
    EXPECT_EQ(manager->currentSubtitleTrack(), std::nullopt);
    EXPECT_FALSE(manager->useCustomSubtitleOverlay());
    EXPECT_EQ(manager->retryCount(), 0);
    EXPECT_EQ(PlayerManager::maxRetries, 5);
    EXPECT_EQ(manager->pendingStartPosition(), 0);
    EXPECT_EQ(manager->savedVolume(), 1.0F);
    EXPECT_FALSE(manager->aspectFill());
    EXPECT_EQ(manager->selectedAspectRatio(), "Original");
    EXPECT_EQ(manager->lastOpenedURL(), "");
    EXPECT_FALSE(manager->hasLoggedFirstFrameTracks());
    EXPECT_TRUE(manager->loadedSubtitles().empty());
    EXPECT_FALSE(manager->onProgressUpdate());
    EXPECT_FALSE(manager->onNextTrack());
    EXPECT_FALSE(manager->onPreviousTrack());
    EXPECT_EQ(scheduler.activeTimers(), 0);
}

TEST_F(PlayerManagerTest, GivesLiveAndMoviesTheSameOptionsInOrder) {
    using enum FSOptions::Category;
    const auto expected = ElementsAre(FSOptions::Entry{Player, "videotoolbox", "0"},
                                      FSOptions::Entry{Player, "max-buffer-size", "15000000"},
                                      FSOptions::Entry{Format, "analyzeduration", "15000000"},
                                      FSOptions::Entry{Player, "framedrop", "1"},
                                      FSOptions::Entry{Player, "overlay-format", "fcc-_es2"});
    EXPECT_THAT(start(movie()).options.entries(), expected);
    EXPECT_THAT(start(liveChannel()).options.entries(), expected);
    EXPECT_TRUE(manager->isLive());
}

TEST_F(PlayerManagerTest, PlaysOnWhenTheAudioSessionRefuses) {
    audio.refuses = true;
    start(movie());
    EXPECT_THAT(journal, Contains("active 1"));
    EXPECT_EQ(journal.back(), "prepare " + movie().url);
    EXPECT_EQ(manager->error(), std::nullopt);
}

TEST_F(PlayerManagerTest, EndsWhatPlayedBeforeItRefusesATextThatIsNoURL) {
    start(movie());
    journal.clear();
    manager->play(movie("http://tv.example/a film.mp4"), 12);
    EXPECT_THAT(journal, ElementsAre("shutdown " + movie().url, "released"));
    EXPECT_EQ(manager->error(), "URL invalido");
    EXPECT_EQ(manager->player(), nullptr);
    EXPECT_EQ(manager->currentItem(), std::nullopt);
    EXPECT_EQ(manager->pendingStartPosition(), 0);
    EXPECT_EQ(manager->lastOpenedURL(), movie().url);
    EXPECT_FALSE(manager->isBuffering());
}

TEST_F(PlayerManagerTest, LeavesTheRestAloneWhenItRefusesATextThatIsNoURL) {
    start(liveChannel());
    manager->setRetryCount(3);
    manager->play(movie("http://tv.example/a film.mp4"), 12);
    EXPECT_TRUE(manager->isLive());
    EXPECT_EQ(manager->retryCount(), 3);
}

TEST_F(PlayerManagerTest, GoesFromAChannelToAMovie) {
    start(liveChannel());
    ASSERT_EQ(scheduler.activeTimers(), 1);
    start(movie());
    EXPECT_FALSE(manager->isLive());
    EXPECT_EQ(scheduler.activeTimers(), 2) << "progress is saved again";
}

TEST_F(PlayerManagerTest, RefusesAnEmptyURLAndForgetsTheErrorAtTheNextPlay) {
    manager->play(movie(""), 0);
    EXPECT_EQ(manager->error(), "URL invalido");
    start(movie());
    EXPECT_EQ(manager->error(), std::nullopt);
}

TEST_F(PlayerManagerTest, PlaysItsOwnCurrentItemAgain) {
    start(movie());
    manager->play(*manager->currentItem(), 5);
    EXPECT_EQ(manager->currentItem(), movie());
    EXPECT_EQ(engine().content, movie().url);
}

TEST_F(PlayerManagerTest, LeavesAnEngineAloneThatWasReplacedBeforeItWasPrepared) {
    manager->play(movie("http://tv.example/old.mp4"), 0);
    // Somebody else keeps the old engine in being.
    const auto old = manager->player();
    manager->play(movie("http://tv.example/new.mp4"), 0);
    scheduler.runPending();
    EXPECT_THAT(journal, Not(Contains("prepare http://tv.example/old.mp4")));
    EXPECT_THAT(journal, Contains("prepare http://tv.example/new.mp4"));
    EXPECT_EQ(scheduler.activeTimers(), 2);
}

TEST_F(PlayerManagerTest, PreparesNothingThatWasStoppedMeanwhile) {
    manager->play(movie(), 0);
    manager->stop();
    scheduler.runPending();
    EXPECT_THAT(journal, Not(Contains("prepare " + movie().url)));
    EXPECT_EQ(scheduler.activeTimers(), 0);
}

TEST_F(PlayerManagerTest, KeepsNoEngineInBeingThatIsStillToBePrepared) {
    manager->play(movie(), 0);
    manager->stop();
    EXPECT_EQ(journal.back(), "released");
}

TEST_F(PlayerManagerTest, NoLongerHearsAnEngineThatItShutsDown) {
    auto& running = start(movie());
    running.onShutdown = [&] { running.post(FSPlayerIsPreparedToPlayNotification); };
    manager->stop();
    scheduler.runPending();
    EXPECT_EQ(manager->tracksNonce(), 0);
}

TEST_F(PlayerManagerTest, StopsInAFixedOrder) {
    auto& running = start(movie());
    running.report(FSPlaybackState::Playing);
    scheduler.runPending();
    QSignalSpy playing(manager.get(), &PlayerManager::isPlayingChanged);
    int timersAtShutdown = -1;
    bool stillThere = false;
    running.onShutdown = [&] {
        timersAtShutdown = scheduler.activeTimers();
        stillThere = manager->player() != nullptr && manager->currentItem() && playing.isEmpty();
        running.report(FSPlaybackState::Playing);
    };
    journal.clear();
    manager->stop();
    EXPECT_THAT(journal, ElementsAre("shutdown " + movie().url, "released"));
    EXPECT_EQ(timersAtShutdown, 0);
    EXPECT_TRUE(stillThere);
    scheduler.runPending();
    EXPECT_FALSE(manager->isPlaying());
}

TEST_F(PlayerManagerTest, ClearsTheItemsStateWithStop) {
    auto& running = start(movie(), 40);
    running.time = 20;
    running.length = 100;
    running.report(FSPlaybackState::Playing);
    scheduler.advance(0.5);
    manager->setOnNextTrack([] {});
    manager->setOnPreviousTrack([] {});
    manager->setLoadedSubtitles({SubtitleTrack{}});
    manager->setCurrentSubtitleTrack(SubtitleTrack{});
    manager->setHasLoggedFirstFrameTracks(true);
    ASSERT_TRUE(manager->isPlaying());
    ASSERT_EQ(manager->currentTime(), 20);
    manager->setIsBuffering(true);
    manager->setError("text");
    manager->stop();
    EXPECT_EQ(manager->player(), nullptr);
    EXPECT_FALSE(manager->isPlaying());
    EXPECT_EQ(manager->currentItem(), std::nullopt);
    EXPECT_EQ(manager->currentTime(), 0);
    EXPECT_EQ(manager->duration(), 0);
    EXPECT_FALSE(manager->isBuffering());
    EXPECT_EQ(manager->error(), std::nullopt);
    EXPECT_EQ(manager->pendingStartPosition(), 0);
    EXPECT_FALSE(manager->hasLoggedFirstFrameTracks());
    EXPECT_TRUE(manager->loadedSubtitles().empty());
    EXPECT_EQ(manager->currentSubtitleTrack(), std::nullopt);
    EXPECT_FALSE(manager->onNextTrack());
    EXPECT_FALSE(manager->onPreviousTrack());
}

TEST_F(PlayerManagerTest, KeepsTheUsersChoicesThroughStop) {
    start(liveChannel());
    engine().post(FSPlayerIsPreparedToPlayNotification);
    scheduler.runPending();
    manager->toggleMute();
    manager->setSavedVolume(0.25F);
    manager->setIsMiniPlayer(true);
    manager->setAspectFill(true);
    manager->setSelectedAspectRatio("Preencher");
    manager->setUseCustomSubtitleOverlay(true);
    manager->setRetryCount(2);
    manager->setOnProgressUpdate([](double, double) {});
    manager->stop();
    EXPECT_TRUE(manager->isLive());
    EXPECT_TRUE(manager->isMuted());
    EXPECT_EQ(manager->savedVolume(), 0.25F);
    EXPECT_TRUE(manager->isMiniPlayer());
    EXPECT_TRUE(manager->aspectFill());
    EXPECT_EQ(manager->selectedAspectRatio(), "Preencher");
    EXPECT_TRUE(manager->useCustomSubtitleOverlay());
    EXPECT_EQ(manager->retryCount(), 2);
    EXPECT_EQ(manager->lastOpenedURL(), liveChannel().url);
    EXPECT_EQ(manager->tracksNonce(), 1);
    EXPECT_TRUE(manager->onProgressUpdate());
}

TEST_F(PlayerManagerTest, StopsWhenNothingPlays) {
    manager->stop();
    EXPECT_TRUE(journal.empty());
    EXPECT_EQ(manager->player(), nullptr);
}

TEST_F(PlayerManagerTest, FillsTheViewOfTheNextEngineToo) {
    manager->setAspectFill(true);
    start(movie());
    EXPECT_THAT(journal, Contains("scalingMode 1"));
}

TEST_F(PlayerManagerTest, StartsTheNextEngineSilentWhileMuted) {
    start(movie());
    engine().volume = 0.6F;
    manager->toggleMute();
    EXPECT_EQ(engine().volume, 0.0F);
    EXPECT_EQ(manager->savedVolume(), 0.6F);
    start(liveChannel());
    EXPECT_EQ(engine().volume, 0.0F);
    EXPECT_TRUE(manager->isMuted());
    const auto position = [this](const std::string& line) { return std::ranges::find(journal, line); };
    EXPECT_LT(std::ranges::find(position("create " + liveChannel().url), journal.end(), "volume 0"),
              position("prepare " + liveChannel().url));
    manager->toggleMute();
    EXPECT_EQ(engine().volume, 0.6F);
    EXPECT_FALSE(manager->isMuted());
}

TEST_F(PlayerManagerTest, LeavesTheVolumeAloneUnlessMuted) {
    nextVolume = 0.3F;
    EXPECT_EQ(start(movie()).volume, 0.3F);
}

TEST_F(PlayerManagerTest, RestoresFullVolumeWhenThereWasNoneToRemember) {
    start(movie());
    engine().volume = 0.0F;
    manager->toggleMute();
    EXPECT_EQ(manager->savedVolume(), 1.0F);
    manager->setSavedVolume(0.0F);
    manager->toggleMute();
    EXPECT_EQ(engine().volume, 1.0F);
}

TEST_F(PlayerManagerTest, MutesWithoutAnEngine) {
    manager->setSavedVolume(0.5F);
    manager->toggleMute();
    EXPECT_TRUE(manager->isMuted());
    EXPECT_EQ(manager->savedVolume(), 1.0F);
    manager->toggleMute();
    EXPECT_FALSE(manager->isMuted());
}

TEST_F(PlayerManagerTest, TogglesBetweenPlayAndPause) {
    start(movie());
    journal.clear();
    manager->togglePlayPause();
    EXPECT_TRUE(manager->isPlaying());
    manager->togglePlayPause();
    EXPECT_FALSE(manager->isPlaying());
    EXPECT_THAT(journal, ElementsAre("play", "pause"));
}

TEST_F(PlayerManagerTest, FlipsTheFlagEvenWithoutAnEngine) {
    manager->togglePlayPause();
    EXPECT_TRUE(manager->isPlaying());
    manager->togglePlayPause();
    EXPECT_FALSE(manager->isPlaying());
}

TEST_F(PlayerManagerTest, EndsTheProcessOverAnEngineWithoutAView) {
    nextHasView = false;
    setFatalFaultHandler([](std::string_view reason) { throw std::runtime_error(std::string(reason)); });
    EXPECT_THROW(manager->play(movie(), 0), std::runtime_error);
    setFatalFaultHandler(nullptr);
}

TEST_F(PlayerManagerTest, ShutsTheEngineDownWhenItGoesAway) {
    start(movie());
    journal.clear();
    manager.reset();
    EXPECT_THAT(journal, ElementsAre("shutdown " + movie().url, "released"));
    EXPECT_EQ(scheduler.activeTimers(), 0);
}

TEST_F(PlayerManagerTest, GoesAwayBeforeItsEngineIsPrepared) {
    manager->play(movie(), 0);
    const auto kept = manager->player();
    manager.reset();
    scheduler.runPending();
    EXPECT_THAT(journal, Not(Contains("prepare " + movie().url)));
}

TEST_F(PlayerManagerTest, IsReachedAsTheOneOfTheProcess) {
    PlayerManager::setShared(manager.get());
    EXPECT_EQ(&PlayerManager::shared(), manager.get());
    manager.reset();
    setFatalFaultHandler([](std::string_view reason) { throw std::runtime_error(std::string(reason)); });
    EXPECT_THROW((void)PlayerManager::shared(), std::runtime_error);
    setFatalFaultHandler(nullptr);
}

} // namespace
} // namespace ondavia::testing
