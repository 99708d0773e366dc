// The manager with the engine of the application, over real connections.
#include "MediaServer.h"
#include "platform/linux/LinuxAudioSession.h"
#include "platform/linux/PulseVolume.h"
#include "platform/linux/QtScheduler.h"
#include "playback/PlayerManager.h"
#include "playback/engine/MpvPlayerFactory.h"
#include "support/TestSupport.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>

namespace ondavia::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using namespace std::chrono_literals;

constexpr int clipSeconds = 20;

class RealEngine : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        folder = std::make_unique<TemporaryFolder>();
        ASSERT_TRUE(makeClip(clip(), clipSeconds));
    }
    static void TearDownTestSuite() { folder.reset(); }
    static std::filesystem::path clip() { return folder->path() / "clip.mp4"; }

    ~RealEngine() override {
        manager.stop();
        EXPECT_THAT(log.text(), Not(HasSubstr("s3cr3t-word")));
    }

    static Channel movie(const std::string& url) {
        Channel channel;
        channel.id = "main_7";
        channel.type = "movie";
        channel.url = url;
        return channel;
    }

    /// The picture has come and the position has moved past `position`.
    bool playsPast(double position) {
        return waitUntil([&] {
            return manager.isPlaying() && !manager.isBuffering() && manager.hasLoggedFirstFrameTracks() &&
                   manager.currentTime() > position;
        });
    }

    /// Quickly, and once only.
    void playsToItsEnd() {
        bool finished = false;
        manager.play(movie(server.url()), 0);
        const auto* engine = manager.player().get();
        manager.player()->setPlaybackRate(5);
        notifications.addObserver(this, FSPlayerDidFinishNotification, engine,
                                  [&](const Notification&) { finished = true; });
        ASSERT_TRUE(playsPast(0.5));
        const int requests = server.requests();
        ASSERT_TRUE(waitUntil([&] { return finished; }));
        EXPECT_TRUE(waitUntil([this] { return !manager.isPlaying(); }));
        EXPECT_GT(manager.currentTime(), clipSeconds / 2.0);
        EXPECT_EQ(manager.retryCount(), 0);
        EXPECT_EQ(manager.player().get(), engine);
        EXPECT_EQ(server.requests(), requests);
        notifications.removeObserver(this, engine);
    }

    static std::unique_ptr<TemporaryFolder> folder;
    const LogCapture log;
    NotificationCenter notifications;
    std::unique_ptr<Scheduler> scheduler = makeQtScheduler();
    PulseVolume volume;
    std::unique_ptr<AVAudioSession> audio = makeLinuxAudioSession(volume);
    MediaServer server{clip()};
    MPNowPlayingInfoCenter nowPlaying;
    MPRemoteCommandCenter commands;
    PlayerManager manager{{makeMpvPlayerFactory(notifications, MpvOutputs::Null),
                           notifications,
                           *scheduler,
                           *audio,
                           {},
                           nowPlaying,
                           commands}};
};

std::unique_ptr<TemporaryFolder> RealEngine::folder;

TEST_F(RealEngine, PlaysAMovie) {
    manager.play(movie(server.url()), 0);
    EXPECT_TRUE(manager.isBuffering());
    ASSERT_TRUE(playsPast(0.5));
    EXPECT_NEAR(manager.duration(), clipSeconds, 0.5);
    EXPECT_GT(manager.tracksNonce(), 0);
    EXPECT_EQ(manager.error(), std::nullopt);
    const auto dump = log.messages(LogCategory::player, LogLevel::Debug);
    EXPECT_THAT(dump, ::testing::Contains(HasSubstr("type=video codec=h264")));
    EXPECT_THAT(dump, ::testing::Contains(HasSubstr("320x180")));
    EXPECT_THAT(dump, ::testing::Contains(HasSubstr("type=audio codec=aac")));
}

TEST_F(RealEngine, PausesSeeksAndPlaysOn) {
    manager.play(movie(server.url()), 0);
    ASSERT_TRUE(playsPast(0.5));
    manager.togglePlayPause();
    ASSERT_TRUE(waitUntil([this] { return manager.player()->playbackState() == FSPlaybackState::Paused; }));
    EXPECT_FALSE(manager.isPlaying());
    manager.seek(10);
    EXPECT_EQ(manager.currentTime(), 10);
    manager.togglePlayPause();
    ASSERT_TRUE(playsPast(10.2));
    EXPECT_LT(manager.currentTime(), 14);
}

TEST_F(RealEngine, StartsAtTheBeginningAndGoesToItsPositionAtTheFirstFrame) {
    std::optional<double> positionAtFirstFrame;
    QObject::connect(&manager, &PlayerManager::pendingStartPositionChanged, &manager, [&] {
        if (manager.pendingStartPosition() == 0 && !positionAtFirstFrame) {
            positionAtFirstFrame = manager.currentTime();
        }
    });
    manager.play(movie(server.url()), 12);
    ASSERT_TRUE(playsPast(12));
    ASSERT_TRUE(positionAtFirstFrame);
    EXPECT_LT(*positionAtFirstFrame, 2);
    EXPECT_LT(manager.currentTime(), 16);
    EXPECT_EQ(manager.pendingStartPosition(), 0);
}

TEST_F(RealEngine, ASeekThatIsRefusedGoesOnWhereItWasMeantToOnceTheServerIsMended) {
    server.holdAt(0.4);
    manager.play(movie(server.url()), 0);
    ASSERT_TRUE(playsPast(0.5));
    double furthest = 0;
    const QObject watcher;
    QObject::connect(&manager, &PlayerManager::currentTimeChanged, &watcher,
                     [&] { furthest = std::max(furthest, manager.currentTime()); });
    const int requests = server.requests();
    server.refuse();
    manager.seek(15);
    // That of the seek, and of two tries after it.
    ASSERT_TRUE(waitUntil([&] { return server.requests() >= requests + 3; }));
    EXPECT_LT(furthest, 16);
    server.mend();
    ASSERT_TRUE(playsPast(15));
    EXPECT_LT(manager.currentTime(), 18);
}

TEST_F(RealEngine, TriesAgainUntilTheServerIsMended) {
    server.refuse();
    manager.play(movie(server.url()), 0);
    ASSERT_TRUE(waitUntil([this] { return server.requests() >= 3; }));
    EXPECT_TRUE(manager.isBuffering());
    EXPECT_EQ(manager.error(), std::nullopt);
    EXPECT_TRUE(manager.currentItem());
    server.mend();
    ASSERT_TRUE(playsPast(0.5));
}

TEST_F(RealEngine, PlaysOnFromThePositionReachedAfterACut) {
    server.cutAt(0.25);
    manager.play(movie(server.url()), 0);
    ASSERT_TRUE(playsPast(2));
    ASSERT_TRUE(waitUntil([this] { return manager.retryCount() == 1; }));
    const double reached = manager.currentTime();
    EXPECT_LT(reached, clipSeconds / 2.0);
    server.mend();
    ASSERT_TRUE(waitUntil([this] { return manager.retryCount() == 0; }));
    EXPECT_NEAR(manager.pendingStartPosition(), reached, 0.6);
    ASSERT_TRUE(playsPast(reached + 1));
    EXPECT_LT(manager.currentTime(), reached + 5);
}

TEST_F(RealEngine, PlaysFromTheBeginningAfterACutWhereThereAreNoRanges) {
    server.keepSizeToItself();
    server.cutAt(0.25);
    manager.play(movie(server.url()), 0);
    ASSERT_TRUE(playsPast(2));
    ASSERT_TRUE(waitUntil([this] { return manager.retryCount() == 1; }));
    server.mend();
    ASSERT_TRUE(waitUntil([this] { return manager.retryCount() == 0; }));
    EXPECT_GT(manager.pendingStartPosition(), 2);
    const auto failures = log.messages(LogCategory::player, LogLevel::Error);
    ASSERT_TRUE(playsPast(0.5));
    EXPECT_LT(manager.currentTime(), 2);
    EXPECT_EQ(manager.pendingStartPosition(), 0);
    EXPECT_EQ(log.messages(LogCategory::player, LogLevel::Error), failures);
    EXPECT_EQ(server.requests(), 2);
}

TEST_F(RealEngine, PlaysAMovieToItsEnd) {
    playsToItsEnd();
}

TEST_F(RealEngine, PlaysAMovieOfUnknownSizeToItsEnd) {
    server.keepSizeToItself();
    playsToItsEnd();
}

TEST_F(RealEngine, StopsAtOnceWhileItIsConnecting) {
    QTcpServer silent;
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost, 0));
    manager.play(
        movie("http://127.0.0.1:" + std::to_string(silent.serverPort()) + "/movie/maria/s3cr3t-word/7.mp4"),
        0);
    ASSERT_TRUE(waitUntil([&] { return silent.hasPendingConnections(); }));
    QElapsedTimer clock;
    clock.start();
    manager.stop();
    // Who waits for the silent server waits for half a minute.
    EXPECT_LT(clock.elapsed(), 5000);
    EXPECT_EQ(manager.player(), nullptr);
    clock.restart();
    manager.play(movie(server.url()), 0);
    EXPECT_LT(clock.elapsed(), 5000);
    EXPECT_TRUE(playsPast(0.5));
}

} // namespace
} // namespace ondavia::testing
