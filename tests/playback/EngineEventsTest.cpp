#include "PlayerManagerFixture.h"

#include <QSignalSpy>

#include <thread>

namespace ondavia::testing {
namespace {

using ::testing::Contains;
using ::testing::Not;

struct PlaybackStateCase final {
    FSPlaybackState state;
    bool playingBefore;
    bool playingAfter;
    bool bufferingAfter;
    bool errorAfter;
};

class PlaybackStates : public PlayerManagerTest, public ::testing::WithParamInterface<PlaybackStateCase> {};

TEST_P(PlaybackStates, AreMirrored) {
    const auto& expected = GetParam();
    start(movie());
    manager->setIsPlaying(expected.playingBefore);
    manager->setIsBuffering(true);
    manager->setError("before");
    engine().report(expected.state);
    EXPECT_EQ(manager->isPlaying(), expected.playingBefore) << "before the hop";
    scheduler.runPending();
    EXPECT_EQ(manager->isPlaying(), expected.playingAfter);
    EXPECT_EQ(manager->isBuffering(), expected.bufferingAfter);
    EXPECT_EQ(manager->error().has_value(), expected.errorAfter);
}

INSTANTIATE_TEST_SUITE_P(
    EveryCode, PlaybackStates,
    ::testing::Values(PlaybackStateCase{FSPlaybackState::Stopped, true, false, true, true},
                      PlaybackStateCase{FSPlaybackState::Playing, false, true, false, false},
                      PlaybackStateCase{FSPlaybackState::Paused, true, false, true, true},
                      PlaybackStateCase{FSPlaybackState::Interrupted, true, false, true, true},
                      PlaybackStateCase{FSPlaybackState::SeekingForward, true, true, true, true},
                      PlaybackStateCase{FSPlaybackState::SeekingForward, false, false, true, true},
                      PlaybackStateCase{FSPlaybackState::SeekingBackward, true, true, true, true},
                      PlaybackStateCase{FSPlaybackState::SeekingBackward, false, false, true, true},
                      PlaybackStateCase{static_cast<FSPlaybackState>(6), true, true, true, true},
                      PlaybackStateCase{static_cast<FSPlaybackState>(-1), false, false, true, true}));

struct LoadStateCase final {
    unsigned bits;
    bool before;
    bool after;
};

class LoadStates : public PlayerManagerTest, public ::testing::WithParamInterface<LoadStateCase> {};

TEST_P(LoadStates, TurnTheSpinner) {
    const auto& expected = GetParam();
    start(movie());
    manager->setIsBuffering(expected.before);
    engine().reportLoad(expected.bits);
    scheduler.runPending();
    EXPECT_EQ(manager->isBuffering(), expected.after);
}

INSTANTIATE_TEST_SUITE_P(EveryBit, LoadStates,
                         ::testing::Values(LoadStateCase{0, true, true}, LoadStateCase{0, false, false},
                                           LoadStateCase{1, true, false}, LoadStateCase{2, true, false},
                                           LoadStateCase{3, true, false}, LoadStateCase{4, false, true},
                                           LoadStateCase{5, false, true}, LoadStateCase{6, false, true},
                                           LoadStateCase{7, false, true}, LoadStateCase{8, true, true},
                                           LoadStateCase{8, false, false}));

using EngineEvents = PlayerManagerTest;

TEST_F(EngineEvents, AStallComesAndGoes) {
    start(liveChannel());
    engine().reportLoad(1);
    scheduler.runPending();
    engine().reportLoad(4);
    scheduler.runPending();
    EXPECT_TRUE(manager->isBuffering());
    engine().reportLoad(1);
    scheduler.runPending();
    EXPECT_FALSE(manager->isBuffering());
}

TEST_F(EngineEvents, EveryFinishButAnErrorOnlyStopsPlaying) {
    for (const QVariant& reason :
         {QVariant(0), QVariant(2), QVariant(-1), QVariant(99), QVariant(QStringLiteral("1")), QVariant(1.0),
          QVariant(true), QVariant(qlonglong(0x1'0000'0001)), QVariant()}) {
        start(movie());
        manager->setIsPlaying(true);
        engine().finish(reason);
        scheduler.runPending();
        EXPECT_FALSE(manager->isPlaying());
        EXPECT_EQ(scheduler.activeSleeps(), 0) << reason.toString().toStdString();
        EXPECT_EQ(manager->retryCount(), 0);
        EXPECT_TRUE(manager->currentItem());
    }
}

TEST_F(EngineEvents, AnErrorIsOneInEveryTypeOfInteger) {
    for (const QVariant& reason :
         {QVariant(1), QVariant(1U), QVariant(qlonglong(1)), QVariant(qulonglong(1)), QVariant::fromValue(1L),
          QVariant::fromValue(1UL), QVariant::fromValue(short(1)), QVariant::fromValue(ushort(1)),
          QVariant::fromValue(char(1)), QVariant::fromValue(static_cast<signed char>(1)),
          QVariant::fromValue(uchar(1))}) {
        start(movie());
        engine().finish(reason);
        scheduler.runPending();
        EXPECT_EQ(manager->retryCount(), 1) << reason.typeName();
    }
}

TEST_F(EngineEvents, AFinishWithoutAReasonIsNoError) {
    start(movie());
    manager->setIsPlaying(true);
    engine().post(FSPlayerDidFinishNotification);
    scheduler.runPending();
    EXPECT_FALSE(manager->isPlaying());
    EXPECT_EQ(scheduler.activeSleeps(), 0);
}

TEST_F(EngineEvents, TheStartPositionIsAppliedAtTheFirstFrameOnly) {
    start(movie(), 42);
    engine().post(FSPlayerIsPreparedToPlayNotification);
    engine().report(FSPlaybackState::Playing);
    scheduler.advance(2);
    EXPECT_THAT(journal, Not(Contains("seek 42")));
    manager->setIsBuffering(true);
    engine().post(FSPlayerFirstVideoFrameRenderedNotification);
    scheduler.runPending();
    EXPECT_EQ(engine().time, 42);
    EXPECT_EQ(manager->pendingStartPosition(), 0);
    EXPECT_FALSE(manager->isBuffering());
    engine().time = 50;
    engine().post(FSPlayerFirstVideoFrameRenderedNotification);
    scheduler.runPending();
    EXPECT_EQ(engine().time, 50);
}

TEST_F(EngineEvents, AFirstFrameWithoutAStartPositionSeeksNowhere) {
    start(movie(), 0);
    journal.clear();
    engine().post(FSPlayerFirstVideoFrameRenderedNotification);
    scheduler.runPending();
    EXPECT_TRUE(journal.empty());
    EXPECT_FALSE(manager->isBuffering());
}

TEST_F(EngineEvents, PreparedAndSelectedStreamsCountUpTheNonce) {
    start(movie());
    QSignalSpy nonce(manager.get(), &PlayerManager::tracksNonceChanged);
    engine().post(FSPlayerIsPreparedToPlayNotification);
    scheduler.runPending();
    EXPECT_EQ(manager->tracksNonce(), 1);
    engine().post(FSPlayerSelectedStreamDidChangeNotification);
    scheduler.runPending();
    EXPECT_EQ(manager->tracksNonce(), 2);
    EXPECT_EQ(nonce.count(), 2);
}

TEST_F(EngineEvents, TheDumpIsWrittenOncePerEngine) {
    const LogCapture log;
    const auto dumps = [&log] {
        const auto lines = log.messages(LogCategory::player, LogLevel::Debug);
        return std::ranges::count(lines, "==== First frame track dump ====");
    };
    start(movie());
    engine().post(FSPlayerFirstVideoFrameRenderedNotification);
    engine().post(FSPlayerFirstVideoFrameRenderedNotification);
    scheduler.runPending();
    EXPECT_TRUE(manager->hasLoggedFirstFrameTracks());
    EXPECT_EQ(dumps(), 1);
    start(movie());
    engine().post(FSPlayerFirstVideoFrameRenderedNotification);
    scheduler.runPending();
    EXPECT_EQ(dumps(), 2);
}

TEST_F(EngineEvents, AFrameThatComesAfterTheEngineIsGoneDumpsNothing) {
    const LogCapture log;
    start(movie());
    engine().post(FSPlayerFirstVideoFrameRenderedNotification);
    manager->stop();
    scheduler.runPending();
    EXPECT_FALSE(manager->hasLoggedFirstFrameTracks());
    EXPECT_TRUE(log.messages(LogCategory::player, LogLevel::Debug).empty());
}

TEST_F(EngineEvents, TheEngineIsReadWhenTheTaskRuns) {
    start(movie());
    engine().report(FSPlaybackState::Playing);
    engine().state = FSPlaybackState::Paused;
    scheduler.runPending();
    EXPECT_FALSE(manager->isPlaying());
}

TEST_F(EngineEvents, WhatTheFormerEngineReportedIsReadFromTheOneThatPlays) {
    start(movie("http://tv.example/old.mp4"));
    const auto old = lastEngine.lock();
    old->report(FSPlaybackState::Playing);
    old->reportLoad(FSLoadStatePlayable);
    manager->play(movie("http://tv.example/new.mp4"), 0);
    scheduler.runPending();
    EXPECT_FALSE(manager->isPlaying());
    EXPECT_TRUE(manager->isBuffering());
}

TEST_F(EngineEvents, WhatAnEngineReportedBeforeItWasStoppedIsDropped) {
    for (const unsigned bits : {FSLoadStatePlayable, FSLoadStateStalled}) {
        start(movie());
        const auto old = lastEngine.lock();
        old->report(FSPlaybackState::Playing);
        old->reportLoad(bits);
        manager->stop();
        scheduler.runPending();
        EXPECT_FALSE(manager->isPlaying());
        EXPECT_FALSE(manager->isBuffering());
    }
}

TEST_F(EngineEvents, AnEngineThatWasReplacedIsNoLongerHeard) {
    start(movie("http://tv.example/old.mp4"));
    const auto old = lastEngine.lock();
    start(movie("http://tv.example/new.mp4"));
    engine().state = FSPlaybackState::Playing;
    for (const char* name :
         {FSPlayerPlaybackStateDidChangeNotification, FSPlayerLoadStateDidChangeNotification,
          FSPlayerDidFinishNotification, FSPlayerFirstVideoFrameRenderedNotification,
          FSPlayerIsPreparedToPlayNotification, FSPlayerSelectedStreamDidChangeNotification}) {
        old->post(name);
    }
    scheduler.runPending();
    EXPECT_FALSE(manager->isPlaying());
    EXPECT_TRUE(manager->isBuffering());
    EXPECT_EQ(manager->tracksNonce(), 0);
}

TEST_F(EngineEvents, NotificationsOfOtherThreadsArriveOnTheMainThread) {
    start(movie());
    std::thread::id changedOn;
    QObject::connect(
        manager.get(), &PlayerManager::isPlayingChanged, manager.get(),
        [&] { changedOn = std::this_thread::get_id(); }, Qt::DirectConnection);
    std::thread([this] { engine().report(FSPlaybackState::Playing); }).join();
    EXPECT_FALSE(manager->isPlaying());
    scheduler.runPending();
    EXPECT_TRUE(manager->isPlaying());
    EXPECT_EQ(changedOn, std::this_thread::get_id());
}

TEST_F(EngineEvents, NotificationsUnderWayAtTheManagersEndAreDropped) {
    start(movie());
    const auto kept = lastEngine.lock();
    kept->report(FSPlaybackState::Playing);
    kept->fail();
    manager.reset();
    scheduler.runPending();
    EXPECT_EQ(scheduler.activeSleeps(), 0);
}

TEST_F(EngineEvents, ThreadsMayPostWhileTheManagerStopsAndStarts) {
    for (int round = 0; round < 50; ++round) {
        start(movie());
        const auto poster = lastEngine.lock();
        std::thread other([poster] {
            for (int post = 0; post < 20; ++post) {
                poster->post(FSPlayerIsPreparedToPlayNotification);
                poster->post(FSPlayerSelectedStreamDidChangeNotification);
            }
        });
        manager->stop();
        if (round % 2 == 1) {
            restart();
        }
        other.join();
        scheduler.runPending();
        EXPECT_EQ(manager->player(), nullptr);
    }
}

} // namespace
} // namespace ondavia::testing
