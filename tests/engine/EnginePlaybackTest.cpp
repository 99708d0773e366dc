#include "engine/EngineTestSupport.h"

#include <QAbstractEventDispatcher>
#include <QEventLoop>

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

namespace ondavia::testing {
namespace {

using namespace std::chrono_literals;

QVariantMap streamOfType(const FSMonitor& monitor, const char* type, int position = 0) {
    for (const auto& stream : monitor.mediaMeta.value(QStringLiteral("streams")).toList()) {
        const QVariantMap map = stream.toMap();
        if (map.value(QStringLiteral("type")).toString() == QLatin1String(type) && position-- == 0) {
            return map;
        }
    }
    return {};
}

std::string text(const QVariantMap& map, const char* key) {
    return map.value(QString::fromLatin1(key)).toString().toStdString();
}

std::int32_t index(const QVariantMap& map) {
    return map.value(QStringLiteral("stream_idx")).toInt();
}

TEST(EnginePlayback, IsPreparedThenShowsAFrameThenPlays) {
    Engine engine(MpvOutputs::Null, Media::shared().movie);
    EXPECT_EQ(engine->playbackState(), FSPlaybackState::Stopped);
    EXPECT_EQ(engine->loadState(), 0U);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    EXPECT_LT(engine.indexOf("prepared"), engine.indexOf("firstFrame"));
    EXPECT_LT(engine.indexOf("firstFrame"), engine.indexOf("state:1"));
    const auto isLoadState = [](const std::string& event) { return event.starts_with("load:"); };
    const auto firstLoadState = std::ranges::find_if(engine.events(), isLoadState);
    EXPECT_LT(engine.indexOf("state:1"), firstLoadState - engine.events().begin());
    EXPECT_TRUE(engine->isPlaying());
    EXPECT_TRUE((engine->loadState() & FSLoadStatePlayable) != 0);
    EXPECT_NEAR(engine->duration(), 12, 0.3);
    ASSERT_TRUE(engine.awaitPosition(0.5));
    EXPECT_EQ(engine.count("prepared"), 1);
    EXPECT_EQ(engine.count("firstFrame"), 1);
}

TEST(EnginePlayback, WaitsPausedWithoutAutoplay) {
    Engine engine(MpvOutputs::Null, Media::shared().movie);
    engine->setShouldAutoplay(false);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:2"));
    EXPECT_FALSE(engine->isPlaying());
    EXPECT_FALSE(engine.has("state:1"));
    engine->play();
    ASSERT_TRUE(engine.await("state:1"));
    ASSERT_TRUE(engine.awaitPosition(0.2));
}

TEST(EnginePlayback, StandsStillWhilePausedAndGoesOn) {
    Engine engine(MpvOutputs::Null, Media::shared().movie);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.awaitPosition(0.3));
    engine->pause();
    ASSERT_TRUE(engine.await("state:2"));
    double stood = -1;
    ASSERT_TRUE(waitUntil([&] { return std::exchange(stood, engine->currentPlaybackTime()) == stood; }));
    EXPECT_FALSE(waitUntil([&] { return std::abs(engine->currentPlaybackTime() - stood) > 0.1; }, 400ms));
    engine->play();
    EXPECT_TRUE(engine.awaitPosition(stood + 0.3));
}

TEST(EnginePlayback, SeeksToTheExactSecondInBothDirections) {
    Engine engine(MpvOutputs::Null, Media::shared().movie);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    engine->pause();
    ASSERT_TRUE(engine.await("state:2"));
    engine->setCurrentPlaybackTime(7.4);
    EXPECT_TRUE(waitUntil([&] { return std::abs(engine->currentPlaybackTime() - 7.4) < 0.05; }));
    EXPECT_TRUE(waitUntil([&] { return engine->playbackState() == FSPlaybackState::Paused; }));
    engine->setCurrentPlaybackTime(2.2);
    EXPECT_TRUE(waitUntil([&] { return std::abs(engine->currentPlaybackTime() - 2.2) < 0.05; }));
}

TEST(EnginePlayback, TakesASeekFromBeforeTheStreamIsOpen) {
    Engine engine(MpvOutputs::Null, Media::shared().movie);
    engine->prepareToPlay();
    engine->setCurrentPlaybackTime(8);
    EXPECT_TRUE(waitUntil([&] { return engine->currentPlaybackTime() > 7.9; }, 5s));
}

TEST(EnginePlayback, EndsWithReasonZeroAndCanBeSoughtBack) {
    Engine engine(MpvOutputs::Null, Media::shared().movie);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    engine->setCurrentPlaybackTime(11);
    ASSERT_TRUE(engine.await("finish:0"));
    EXPECT_FALSE(engine->isPlaying());
    EXPECT_EQ(engine->playbackState(), FSPlaybackState::Stopped);
    engine->setCurrentPlaybackTime(3);
    EXPECT_TRUE(waitUntil([&] { return engine->isPlaying() && engine->currentPlaybackTime() < 5; }));
    engine->setCurrentPlaybackTime(11.2);
    EXPECT_TRUE(waitUntil([&] { return engine.count("finish:0") == 2; }));
}

TEST(EnginePlayback, PlaysFromTheBeginningAfterTheEnd) {
    Engine engine(MpvOutputs::Null, Media::shared().movie);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    engine->setCurrentPlaybackTime(11.5);
    ASSERT_TRUE(engine.await("finish:0"));
    engine->play();
    EXPECT_TRUE(waitUntil([&] { return engine->isPlaying() && engine->currentPlaybackTime() < 3; }));
}

TEST(EnginePlayback, KeepsVolumeAndRate) {
    Engine engine(MpvOutputs::Null, Media::shared().movie);
    engine->setPlaybackVolume(0.25F);
    EXPECT_FLOAT_EQ(engine->playbackVolume(), 0.25F);
    engine->setPlaybackVolume(3);
    EXPECT_FLOAT_EQ(engine->playbackVolume(), 1);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    engine->setPlaybackRate(2);
    EXPECT_FLOAT_EQ(engine->playbackRate(), 2);
    const auto start = std::chrono::steady_clock::now();
    const double from = engine->currentPlaybackTime();
    ASSERT_TRUE(engine.awaitPosition(from + 4));
    // At the ordinary rate it takes the four seconds.
    EXPECT_LT(std::chrono::steady_clock::now() - start, 4s);
}

TEST(EnginePlayback, TellsOfItsStreamsAndSwitchesThem) {
    Engine engine(MpvOutputs::Null, Media::shared().tracks);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    const FSMonitor monitor = engine->monitor();
    const QVariantMap video = streamOfType(monitor, "video");
    const QVariantMap second = streamOfType(monitor, "audio", 1);
    const QVariantMap subtitle = streamOfType(monitor, "timedtext");
    EXPECT_EQ(text(video, "codec_name"), "h264");
    EXPECT_EQ(text(video, "width"), "320");
    EXPECT_EQ(text(video, "height"), "180");
    EXPECT_EQ(text(second, "codec_name"), "mp3");
    EXPECT_EQ(text(second, "language"), "eng");
    EXPECT_EQ(text(second, "sample_rate"), "44100");
    EXPECT_EQ(text(subtitle, "language"), "por");
    EXPECT_EQ(text(subtitle, "title"), "Forced");
    EXPECT_EQ(text(subtitle, "codec_name"), "subrip");
    EXPECT_EQ(index(subtitle), 3);
    EXPECT_EQ(index(monitor.audioMeta), 1);
    EXPECT_TRUE(monitor.subtitleMeta.isEmpty()) << "no subtitle shows before one is picked";

    const int before = engine.count("streams");
    engine->exchangeSelectedStream(index(second));
    EXPECT_TRUE(waitUntil([&] { return index(engine->monitor().audioMeta) == 2; }));
    engine->exchangeSelectedStream(index(subtitle));
    EXPECT_TRUE(waitUntil([&] { return index(engine->monitor().subtitleMeta) == 3; }));
    engine->closeCurrentStream("timedtext");
    EXPECT_TRUE(waitUntil([&] { return engine->monitor().subtitleMeta.isEmpty(); }));
    EXPECT_TRUE(waitUntil([&] { return engine.count("streams") >= before + 3; }));
    engine->closeCurrentStream("timedtext");
    engine->closeCurrentStream("nonsense");
    engine->exchangeSelectedStream(77);
    EXPECT_TRUE(engine.awaitPosition(engine->currentPlaybackTime() + 0.3));
}

TEST(EnginePlayback, AddsExternalSubtitlesWithoutShowingThemAndShowsThePickedOne) {
    const MediaServer server;
    Engine engine(MpvOutputs::Null, Media::shared().movie);
    const std::string url = server.url("/file/user/word/legenda.srt");
    engine->prepareToPlay();
    engine->loadSubtitlesOnly({url, "edl://x", server.url("/missing.srt")});
    ASSERT_TRUE(waitUntil([&] { return !streamOfType(engine->monitor(), "timedtext").isEmpty(); }));
    EXPECT_LT(index(streamOfType(engine->monitor(), "timedtext")), 0) << "no stream of the file";
    EXPECT_TRUE(engine->monitor().subtitleMeta.isEmpty());
    engine->loadThenActiveSubtitle(url);
    ASSERT_TRUE(waitUntil([&] { return !engine->monitor().subtitleMeta.isEmpty(); }));
    EXPECT_TRUE(streamOfType(engine->monitor(), "timedtext", 1).isEmpty()) << "the file is added once";
}

TEST(EnginePlayback, RadioLeavesBufferingWithoutAPicture) {
    Engine engine(MpvOutputs::Null, Media::shared().radio);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    EXPECT_LT(engine.indexOf("firstFrame"), engine.indexOf("state:1"));
    EXPECT_TRUE(engine->monitor().videoMeta.isEmpty());
}

TEST(EnginePlayback, PositionThatNobodyReadsWakesNobody) {
    const MediaServer server;
    Engine engine(MpvOutputs::Null, server.url("/live/user/word/film.ts"));
    engine->setIsLive(true);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.awaitPosition(1));
    const double from = engine->currentPlaybackTime();
    int wakes = 0;
    QEventLoop loop;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &loop,
                     [&wakes] { ++wakes; });
    QTimer::singleShot(4s, &loop, &QEventLoop::quit);
    loop.exec();
    const int counted = wakes;
    double played = 0;
    ASSERT_TRUE(waitUntil([&] { return (played = engine->currentPlaybackTime() - from) > 2; }));
    constexpr double picturesASecond = 25;
    std::printf("%d wakes of the main loop for %.0f pictures\n", counted, played * picturesASecond);
    EXPECT_LT(counted, played * picturesASecond / 2);
}

TEST(EnginePlayback, LiveChannelHasNoDuration) {
    const MediaServer server;
    Engine engine(MpvOutputs::Null, server.url("/live/user/word/film.ts"));
    engine->setIsLive(true);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.awaitPosition(1));
    EXPECT_EQ(engine->duration(), 0);
}

TEST(EnginePlayback, LiveChannelPlaysOnAfterASeek) {
    const MediaServer server;
    Engine engine(MpvOutputs::Null, server.url("/live/user/word/film.ts"));
    engine->setIsLive(true);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.awaitPosition(1));
    engine->setCurrentPlaybackTime(3600);
    const double from = engine->currentPlaybackTime();
    EXPECT_TRUE(engine.awaitPosition(from + 2));
    EXPECT_LT(engine->currentPlaybackTime(), 12);
    EXPECT_TRUE(engine->isPlaying());
    EXPECT_FALSE(engine.has("finish:0"));
    EXPECT_FALSE(engine.has("finish:1"));
}

} // namespace
} // namespace ondavia::testing
