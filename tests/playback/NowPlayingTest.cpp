#include "PlayerManagerFixture.h"

#include <thread>

namespace ondavia::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

class NowPlayingTest : public PlayerManagerTest {
protected:
    [[nodiscard]] const MPNowPlayingInfo& info() const {
        const auto& present = nowPlaying.nowPlayingInfo();
        if (!present) {
            throw std::logic_error("nothing plays");
        }
        return *present;
    }
    /// Starts an item of an hour, which then stands at `position`.
    void startAt(double position, const Channel& channel = movie()) {
        start(channel);
        manager->setDuration(3600);
        manager->setCurrentTime(position);
    }
    /// Sends a command as the system does, and lets its work be done.
    MPRemoteCommandHandlerStatus send(const MPRemoteCommand& command,
                                      const MPRemoteCommandEvent& event = {}) {
        const auto status = command.send(event);
        scheduler.runPending();
        return status;
    }
    /// What `work` writes to the centre.
    int updatesOf(const std::function<void()>& work) {
        int updates = 0;
        nowPlaying.setOnChange([&updates] { ++updates; });
        work();
        scheduler.runPending();
        nowPlaying.setOnChange({});
        return updates;
    }
};

constexpr auto success = MPRemoteCommandHandlerStatus::success;

TEST_F(NowPlayingTest, IsAbsentUntilTheEngineIsPrepared) {
    EXPECT_FALSE(nowPlaying.nowPlayingInfo());
    manager->play(movie(), 0);
    EXPECT_FALSE(nowPlaying.nowPlayingInfo());
    scheduler.runPending();
    EXPECT_TRUE(nowPlaying.nowPlayingInfo());
    manager->stop();
    EXPECT_FALSE(nowPlaying.nowPlayingInfo());
}

TEST_F(NowPlayingTest, TellsWhatAMovieIsAndWhereItStands) {
    Channel channel = movie();
    channel.name = "Uma Longa Noite";
    channel.genre = "Drama";
    startAt(12.5, channel);
    manager->updateNowPlayingInfo();
    EXPECT_EQ(info(), (MPNowPlayingInfo{.title = "Uma Longa Noite",
                                        .playbackRate = 0,
                                        .defaultPlaybackRate = 1.0,
                                        .isLiveStream = false,
                                        .artist = "Drama",
                                        .elapsedPlaybackTime = 12.5,
                                        .playbackDuration = 3600,
                                        .artwork = nullptr}));
}

TEST_F(NowPlayingTest, TellsNoPositionOfAChannel) {
    Channel channel = liveChannel();
    channel.name = "Canal Um";
    channel.genre = "Desporto";
    channel.seriesName = "Nome";
    startAt(12.5, channel);
    manager->updateNowPlayingInfo();
    MPNowPlayingInfo expected;
    expected.title = "Canal Um";
    expected.isLiveStream = true;
    expected.artist = "AO VIVO";
    EXPECT_EQ(info(), expected);
}

TEST_F(NowPlayingTest, TellsNoDurationThatIsNotKnown) {
    start(movie());
    EXPECT_EQ(info().elapsedPlaybackTime, 0.0);
    EXPECT_EQ(info().playbackDuration, std::nullopt);
    EXPECT_EQ(info().artist, std::nullopt);
}

TEST_F(NowPlayingTest, CallsAnEpisodeByItsOwnTitle) {
    Channel channel = movie();
    channel.name = "Serie S01E02";
    EXPECT_EQ(PlayerManager::nowPlayingTitle(channel), "Serie S01E02");
    channel.episodeTitle = "";
    EXPECT_EQ(PlayerManager::nowPlayingTitle(channel), "Serie S01E02");
    channel.episodeTitle = "O Farol";
    EXPECT_EQ(PlayerManager::nowPlayingTitle(channel), "O Farol");
}

TEST_F(NowPlayingTest, SaysWhichEpisodeItIs) {
    Channel channel = movie();
    channel.genre = "Drama";
    channel.seriesName = "Nome";
    EXPECT_EQ(manager->nowPlayingArtist(channel), "Nome");
    channel.seasonNum = 1;
    EXPECT_EQ(manager->nowPlayingArtist(channel), "Nome") << "a season alone says too little";
    channel.episodeNum = 2;
    EXPECT_EQ(manager->nowPlayingArtist(channel), "Nome — S1E2");
    channel.seasonNum.reset();
    EXPECT_EQ(manager->nowPlayingArtist(channel), "Nome");
    channel.seriesName = "";
    EXPECT_EQ(manager->nowPlayingArtist(channel), "Drama");
    channel.genre = "";
    EXPECT_EQ(manager->nowPlayingArtist(channel), std::nullopt);
}

TEST_F(NowPlayingTest, TellsTheSpeedWhilePlayingAndNoneWhilePaused) {
    start(movie());
    engine().rate = 1.5F;
    manager->togglePlayPause();
    EXPECT_EQ(info().playbackRate, 1.5);
    manager->togglePlayPause();
    EXPECT_EQ(info().playbackRate, 0.0);
    manager->setPlayer(nullptr);
    manager->togglePlayPause();
    EXPECT_EQ(info().playbackRate, 1.0) << "an engine that is not there has no speed of its own";
}

TEST_F(NowPlayingTest, FollowsTheEnginesStates) {
    start(movie());
    EXPECT_EQ(updatesOf([this] { engine().report(FSPlaybackState::Playing); }), 1);
    EXPECT_EQ(info().playbackRate, 1.0);
    EXPECT_EQ(updatesOf([this] { engine().report(FSPlaybackState::Paused); }), 1);
    EXPECT_EQ(info().playbackRate, 0.0);
    for (const auto state : {FSPlaybackState::Stopped, FSPlaybackState::Interrupted,
                             FSPlaybackState::SeekingForward, FSPlaybackState::SeekingBackward}) {
        EXPECT_EQ(updatesOf([this, state] { engine().report(state); }), 0) << static_cast<int>(state);
    }
}

TEST_F(NowPlayingTest, FollowsSeeksAndPausesAndNoTicks) {
    startAt(100);
    EXPECT_EQ(updatesOf([this] { manager->seek(200); }), 1);
    EXPECT_EQ(info().elapsedPlaybackTime, 200.0);
    EXPECT_EQ(updatesOf([this] { manager->seek(4000); }), 0) << "past the end";
    EXPECT_EQ(updatesOf([this] { manager->togglePlayPause(); }), 1);
    EXPECT_EQ(updatesOf([this] { manager->updateNowPlayingInfo(); }), 1) << "nothing holds it back";
    EXPECT_EQ(updatesOf([this] {
                  engine().time = 300;
                  scheduler.advance(0.5);
              }),
              0);
    ASSERT_EQ(manager->currentTime(), 300);
    EXPECT_EQ(manager->lastNowPlayingUpdate(), 0.0);
}

TEST_F(NowPlayingTest, IsLeftAloneWithoutAnItem) {
    EXPECT_EQ(updatesOf([this] { manager->togglePlayPause(); }), 0);
    EXPECT_FALSE(nowPlaying.nowPlayingInfo());
}

TEST_F(NowPlayingTest, IsClearedByEachStop) {
    start(movie());
    EXPECT_EQ(updatesOf([this] { manager->stop(); }), 1);
    EXPECT_EQ(updatesOf([this] { manager->stop(); }), 1);
}

TEST_F(NowPlayingTest, AStopForgetsTheArtworkToo) {
    start(movie());
    manager->setCachedArtwork(std::make_shared<MPMediaItemArtwork>());
    manager->setCachedArtworkURL("http://tv.example/a.png");
    manager->stop();
    EXPECT_EQ(manager->cachedArtwork(), nullptr);
    EXPECT_EQ(manager->cachedArtworkURL(), std::nullopt);
}

TEST_F(NowPlayingTest, CommandsPlayAndPause) {
    start(movie());
    journal.clear();
    EXPECT_EQ(send(commands.playCommand), success);
    EXPECT_TRUE(manager->isPlaying());
    EXPECT_EQ(info().playbackRate, 1.0);
    EXPECT_EQ(send(commands.playCommand), success);
    EXPECT_EQ(send(commands.pauseCommand), success);
    EXPECT_FALSE(manager->isPlaying());
    EXPECT_EQ(info().playbackRate, 0.0);
    EXPECT_EQ(send(commands.togglePlayPauseCommand), success);
    EXPECT_TRUE(manager->isPlaying());
    EXPECT_EQ(send(commands.togglePlayPauseCommand), success);
    EXPECT_FALSE(manager->isPlaying());
    EXPECT_THAT(journal, ElementsAre("play", "play", "pause", "play", "pause"));
}

TEST_F(NowPlayingTest, CommandsChangeTheFlagEvenWithoutAnEngine) {
    EXPECT_EQ(send(commands.playCommand), success);
    EXPECT_TRUE(manager->isPlaying());
    EXPECT_EQ(send(commands.pauseCommand), success);
    EXPECT_FALSE(manager->isPlaying());
}

TEST_F(NowPlayingTest, CommandsAreOnlyTakenAtFirstAndWorkInALaterTurn) {
    start(movie());
    EXPECT_EQ(commands.playCommand.send(), success);
    EXPECT_FALSE(manager->isPlaying());
    scheduler.runPending();
    EXPECT_TRUE(manager->isPlaying());
}

TEST_F(NowPlayingTest, CommandsMayComeFromAnyThread) {
    start(movie());
    std::thread([this] { EXPECT_EQ(commands.playCommand.send(), success); }).join();
    EXPECT_FALSE(manager->isPlaying());
    scheduler.runPending();
    EXPECT_TRUE(manager->isPlaying());
}

TEST_F(NowPlayingTest, CommandsThatComeLateFindNoManager) {
    start(movie());
    EXPECT_EQ(commands.togglePlayPauseCommand.send(), success);
    manager.reset();
    scheduler.runPending();
    EXPECT_EQ(send(commands.playCommand), success);
}

TEST_F(NowPlayingTest, CommandsSkipByWhatTheySayOrTenSeconds) {
    startAt(100);
    EXPECT_THAT(commands.skipForwardCommand.preferredIntervals(), ElementsAre(10.0));
    EXPECT_THAT(commands.skipBackwardCommand.preferredIntervals(), ElementsAre(10.0));
    EXPECT_EQ(send(commands.skipForwardCommand, MPSkipIntervalCommandEvent{25}), success);
    EXPECT_EQ(manager->currentTime(), 125);
    EXPECT_EQ(send(commands.skipForwardCommand), success);
    EXPECT_EQ(manager->currentTime(), 135);
    EXPECT_EQ(send(commands.skipBackwardCommand, MPSkipIntervalCommandEvent{25}), success);
    EXPECT_EQ(manager->currentTime(), 110);
    EXPECT_EQ(send(commands.skipBackwardCommand), success);
    EXPECT_EQ(manager->currentTime(), 100);
}

TEST_F(NowPlayingTest, ASkipBackStopsAtTheBeginning) {
    startAt(4);
    EXPECT_EQ(send(commands.skipBackwardCommand, MPSkipIntervalCommandEvent{10}), success);
    EXPECT_EQ(manager->currentTime(), 0);
    EXPECT_EQ(journal.back(), "seek 0");
}

TEST_F(NowPlayingTest, ASkipPastTheEndIsIgnored) {
    startAt(3595);
    journal.clear();
    EXPECT_EQ(send(commands.skipForwardCommand), success);
    EXPECT_EQ(manager->currentTime(), 3595);
    EXPECT_THAT(journal, ::testing::IsEmpty());
}

TEST_F(NowPlayingTest, CommandsGoToAPosition) {
    startAt(100);
    EXPECT_EQ(send(commands.changePlaybackPositionCommand, MPChangePlaybackPositionCommandEvent{1800}),
              success);
    EXPECT_EQ(manager->currentTime(), 1800);
    EXPECT_EQ(journal.back(), "seek 1800");
}

TEST_F(NowPlayingTest, OnlyAPositionLeadsToOne) {
    startAt(100);
    journal.clear();
    EXPECT_EQ(static_cast<int>(send(commands.changePlaybackPositionCommand)), 200);
    EXPECT_EQ(static_cast<int>(send(commands.changePlaybackPositionCommand, MPSkipIntervalCommandEvent{5})),
              200);
    EXPECT_THAT(journal, ::testing::IsEmpty());
}

TEST_F(NowPlayingTest, AChannelIsNotSoughtEvenIfACommandGetsThrough) {
    start(liveChannel());
    journal.clear();
    EXPECT_EQ(send(commands.changePlaybackPositionCommand, MPChangePlaybackPositionCommandEvent{30}),
              success);
    EXPECT_EQ(send(commands.skipForwardCommand), success);
    EXPECT_THAT(journal, ::testing::IsEmpty());
}

TEST_F(NowPlayingTest, CommandsLeadToTheNextAndThePreviousChannel) {
    start(liveChannel());
    EXPECT_EQ(send(commands.nextTrackCommand), success) << "there may be nothing to do";
    std::vector<std::string> asked;
    manager->setOnNextTrack([&] {
        asked.emplace_back("next");
        // As whoever plays another channel does.
        manager->setOnNextTrack(nullptr);
    });
    manager->setOnPreviousTrack([&] { asked.emplace_back("previous"); });
    EXPECT_EQ(send(commands.nextTrackCommand), success);
    EXPECT_EQ(send(commands.nextTrackCommand), success);
    EXPECT_EQ(send(commands.previousTrackCommand), success);
    EXPECT_THAT(asked, ElementsAre("next", "previous"));
}

struct Enabled final {
    bool next, previous, skipForward, skipBackward, position;
    bool operator==(const Enabled&) const = default;
};

Enabled enabledOf(const MPRemoteCommandCenter& commands) {
    EXPECT_TRUE(commands.playCommand.isEnabled());
    EXPECT_TRUE(commands.pauseCommand.isEnabled());
    EXPECT_TRUE(commands.togglePlayPauseCommand.isEnabled());
    return {commands.nextTrackCommand.isEnabled(), commands.previousTrackCommand.isEnabled(),
            commands.skipForwardCommand.isEnabled(), commands.skipBackwardCommand.isEnabled(),
            commands.changePlaybackPositionCommand.isEnabled()};
}

TEST_F(NowPlayingTest, AMovieOffersItsPositionsAndNoOtherItem) {
    manager->play(movie(), 0);
    manager->setOnNextTrack([] {});
    manager->setOnPreviousTrack([] {});
    scheduler.runPending();
    EXPECT_EQ(enabledOf(commands), (Enabled{false, false, true, true, true}));
}

TEST_F(NowPlayingTest, AChannelOffersTheOthersThatThereAreAndNoPosition) {
    start(liveChannel());
    EXPECT_EQ(enabledOf(commands), (Enabled{false, false, false, false, false}));
    manager->setOnNextTrack([] {});
    manager->updateRemoteCommandsForCurrentMode();
    EXPECT_EQ(enabledOf(commands), (Enabled{true, false, false, false, false}));
    manager->setOnPreviousTrack([] {});
    manager->updateRemoteCommandsForCurrentMode();
    EXPECT_EQ(enabledOf(commands), (Enabled{true, true, false, false, false}));
}

TEST_F(NowPlayingTest, ARetryTakesTheOtherChannelsAwayAndKeepsTheProgress) {
    start(liveChannel());
    manager->setOnNextTrack([] {});
    manager->setOnPreviousTrack([] {});
    manager->setOnProgressUpdate([](double, double) {});
    manager->updateRemoteCommandsForCurrentMode();
    engine().fail();
    scheduler.advance(1);
    EXPECT_FALSE(manager->onNextTrack());
    EXPECT_FALSE(manager->onPreviousTrack());
    EXPECT_TRUE(manager->onProgressUpdate());
    EXPECT_EQ(enabledOf(commands), (Enabled{false, false, false, false, false}));
}

} // namespace
} // namespace ondavia::testing
