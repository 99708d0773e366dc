#include "base/Redaction.h"
#include "playback/engine/FFmpegLog.h"
#include "playback/engine/MpvOptions.h"
#include "playback/engine/PlaybackModel.h"
#include "playback/engine/TrackList.h"

#include "support/TestSupport.h"

#include <gmock/gmock.h>

#include <array>
#include <mpv/client.h>

extern "C" {
#include <libavutil/log.h>
}

namespace ondavia::engine {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StrEq;

TEST(EngineOptions, SystemsOptionsBecomeMpvs) {
    FSOptions options;
    options.setPlayerOptionIntValue(0, "videotoolbox");
    options.setPlayerOptionIntValue(15000000, "max-buffer-size");
    options.setFormatOptionIntValue(15000000, "analyzeduration");
    options.setPlayerOptionIntValue(1, "framedrop");
    options.setPlayerOptionValue("fcc-_es2", "overlay-format");
    EXPECT_THAT(translated(options),
                ElementsAre(MpvOption{"hwdec", "no"}, MpvOption{"demuxer-max-bytes", "15000000"},
                            MpvOption{"demuxer-max-back-bytes", "15000000"},
                            MpvOption{"demuxer-lavf-analyzeduration", "15.000000"},
                            MpvOption{"framedrop", "vo"}));
}

TEST(EngineOptions, CategoryIsPartOfTheKey) {
    FSOptions options;
    options.setPlayerOptionIntValue(1, "analyzeduration");
    options.setPlayerOptionIntValue(1, "unheard-of");
    EXPECT_THAT(translated(options), IsEmpty());
}

TEST(EngineOptions, OnlyStreamsAndFilesAreAddresses) {
    for (const char* address : {"http://a/b", "HTTPS://a/b", "rtmp://a", "rtsp://a", "rtp://a",
                                "udp://1.2.3.4:5", "file:///tmp/x.mkv"}) {
        EXPECT_TRUE(isPlayableAddress(address)) << address;
    }
    for (const char* address : {"", "x.mkv", "/etc/passwd", "-", "edl://x", "lavfi://x", "av://x",
                                "memory://x", "lavf://x", "ffmpeg://x", "cdda://", "dvd://", "fd://0",
                                "ytdl://x", "mmsh://a", "slice://0-1@/etc/passwd", "null://", "http:/a"}) {
        EXPECT_FALSE(isPlayableAddress(address)) << address;
    }
}

TEST(EngineModel, TheConnectionDecidesWhatAnEndMeans) {
    EXPECT_EQ(reasonOfEnd(DataEnd::Whole, false, 50, 0), FSFinishReason::PlaybackEnded);
    EXPECT_EQ(reasonOfEnd(DataEnd::Whole, false, 30, 100), FSFinishReason::PlaybackEnded);
    EXPECT_EQ(reasonOfEnd(DataEnd::BrokenOff, false, 100, 100), FSFinishReason::PlaybackError);
    EXPECT_EQ(reasonOfEnd(DataEnd::Whole, true, 50, 0), FSFinishReason::PlaybackError);
    EXPECT_EQ(reasonOfEnd(DataEnd::Whole, true, 100, 100), FSFinishReason::PlaybackEnded) << "a recording";
    EXPECT_EQ(reasonOfEnd(DataEnd::BrokenOff, true, 100, 100), FSFinishReason::PlaybackError);
}

TEST(EngineModel, ThePositionDecidesWhereTheConnectionCannotBeAsked) {
    const auto reason = [](double position, double duration) {
        return reasonOfEnd(DataEnd::Unknown, false, position, duration);
    };
    EXPECT_EQ(reason(100, 100), FSFinishReason::PlaybackEnded);
    EXPECT_EQ(reason(97.5, 100), FSFinishReason::PlaybackEnded);
    EXPECT_EQ(reason(96.5, 100), FSFinishReason::PlaybackError);
    EXPECT_EQ(reason(7060, 7200), FSFinishReason::PlaybackEnded);
    EXPECT_EQ(reason(7050, 7200), FSFinishReason::PlaybackError);
    EXPECT_EQ(reason(3000, 7200), FSFinishReason::PlaybackError);
    EXPECT_EQ(reason(50, 0), FSFinishReason::PlaybackError);
}

TEST(EngineModel, ClockRunsBetweenReports) {
    using namespace std::chrono_literals;
    PlaybackClock clock;
    const PlaybackClock::Time start{};
    EXPECT_DOUBLE_EQ(clock.position(start + 5s), 0) << "stands still";
    clock.report(10, start);
    clock.run(2, start + 1s);
    EXPECT_DOUBLE_EQ(clock.position(start + 2s), 12);
    clock.run(0, start + 3s);
    EXPECT_DOUBLE_EQ(clock.position(start + 9s), 14);
    clock.report(14.5, start + 9s);
    EXPECT_DOUBLE_EQ(clock.position(start + 10s), 14.5);
}

TEST(EngineModel, ClockThatRanAheadWaitsInsteadOfGoingBack) {
    using namespace std::chrono_literals;
    PlaybackClock clock;
    const PlaybackClock::Time start{};
    clock.report(3, start);
    clock.run(1, start);
    EXPECT_DOUBLE_EQ(clock.position(start + 2s), 5);
    clock.report(4.25, start + 2s);
    EXPECT_DOUBLE_EQ(clock.position(start + 2s), 5);
    clock.run(0, start + 2s);
    EXPECT_DOUBLE_EQ(clock.position(start + 9s), 5);
    clock.run(1, start + 9s);
    EXPECT_DOUBLE_EQ(clock.position(start + 9500ms), 5) << "at 4.75 in truth";
    EXPECT_DOUBLE_EQ(clock.position(start + 10s), 5.25);
}

TEST(EngineModel, ClockGoesBackForASeekAndForAJump) {
    using namespace std::chrono_literals;
    PlaybackClock clock;
    const PlaybackClock::Time start{};
    clock.report(20, start);
    clock.report(19.5, start);
    EXPECT_DOUBLE_EQ(clock.position(start), 20);
    clock.expectJump();
    clock.report(19.5, start);
    EXPECT_DOUBLE_EQ(clock.position(start), 19.5);
    clock.report(19, start);
    EXPECT_DOUBLE_EQ(clock.position(start), 19.5) << "one seek, one jump";
    clock.report(3, start);
    EXPECT_DOUBLE_EQ(clock.position(start), 3) << "too far back to be a report that came late";
}

TEST(EngineModel, DurationStandsForFilesAndSeekableStreamsOnly) {
    MpvState state;
    state.reportedDuration = 90;
    EXPECT_EQ(durationOf(state), 0);
    state.seekable = true;
    EXPECT_EQ(durationOf(state), 90);
    state.seekableInCache = true;
    EXPECT_EQ(durationOf(state), 0);
    state.fileSize = 4000;
    state.fileFormat = "mpegts";
    EXPECT_EQ(durationOf(state), 90) << "a file on a server without ranges";
    state.fileFormat = "hls";
    EXPECT_EQ(durationOf(state), 0);
    state.statedDuration = 0;
    EXPECT_EQ(durationOf(state), 0);
    state.statedDuration = 89;
    EXPECT_EQ(durationOf(state), 90) << "the container says how long it is";
    state.reportedDuration = 91;
    EXPECT_EQ(durationOf(state), 0) << "it was wrong";
}

TEST(EngineModel, StatesFollowStageAndReports) {
    MpvState state;
    EXPECT_EQ(playbackStateOf(Stage::Opening, state, SeekDirection::Forward), FSPlaybackState::Stopped);
    EXPECT_EQ(playbackStateOf(Stage::Prepared, state, SeekDirection::Forward), FSPlaybackState::Stopped);
    EXPECT_EQ(playbackStateOf(Stage::Started, state, SeekDirection::Forward), FSPlaybackState::Playing);
    state.paused = true;
    EXPECT_EQ(playbackStateOf(Stage::Started, state, SeekDirection::Forward), FSPlaybackState::Paused);
    state.seeking = true;
    EXPECT_EQ(playbackStateOf(Stage::Started, state, SeekDirection::Forward),
              FSPlaybackState::SeekingForward);
    EXPECT_EQ(playbackStateOf(Stage::Started, state, SeekDirection::Backward),
              FSPlaybackState::SeekingBackward);
    EXPECT_EQ(playbackStateOf(Stage::Failed, state, SeekDirection::Forward), FSPlaybackState::Stopped);
}

TEST(EngineModel, LoadStateTellsStallsApart) {
    MpvState state;
    EXPECT_EQ(loadStateOf(Stage::Prepared, state), 0U);
    EXPECT_EQ(loadStateOf(Stage::Started, state), FSLoadStatePlayable);
    state.cachedSeconds = 30;
    EXPECT_EQ(loadStateOf(Stage::Started, state), FSLoadStatePlayable | FSLoadStatePlaythroughOK);
    state.pausedForCache = true;
    EXPECT_EQ(loadStateOf(Stage::Started, state), FSLoadStateStalled);
    state.pausedForCache = false;
    state.seeking = true;
    EXPECT_EQ(loadStateOf(Stage::Started, state), FSLoadStatePlayable | FSLoadStatePlaythroughOK);
    state.cachedSeconds = 0;
    EXPECT_EQ(loadStateOf(Stage::Started, state), FSLoadStateStalled);
}

TEST(EngineModel, AStallIsToldOfAfterTheStateThatWouldEndIt) {
    const auto playback = StrEq(FSPlayerPlaybackStateDidChangeNotification);
    const auto load = StrEq(FSPlayerLoadStateDidChangeNotification);
    using enum FSPlaybackState;
    EXPECT_THAT(stateNotifications(true, Playing, true, FSLoadStateStalled), ElementsAre(playback, load));
    EXPECT_THAT(stateNotifications(true, Playing, false, FSLoadStateStalled), ElementsAre(playback, load))
        << "a seek ends, the stall goes on";
    EXPECT_THAT(stateNotifications(true, Playing, false, FSLoadStatePlayable), ElementsAre(playback));
    EXPECT_THAT(stateNotifications(true, Paused, false, FSLoadStateStalled), ElementsAre(playback));
    EXPECT_THAT(stateNotifications(false, Playing, true, FSLoadStatePlayable), ElementsAre(load));
    EXPECT_THAT(stateNotifications(false, Playing, false, FSLoadStateStalled), IsEmpty());
}

TEST(EngineModel, VolumeIsAGainForTheCaller) {
    EXPECT_DOUBLE_EQ(mpvVolume(0), 0);
    EXPECT_DOUBLE_EQ(mpvVolume(1), 100);
    EXPECT_NEAR(mpvVolume(0.125F), 50, 1e-9);
    EXPECT_DOUBLE_EQ(mpvVolume(7), 100);
}

TEST(EngineModel, ExternalTracksAreNoStreamsOfTheFile) {
    Track embedded;
    embedded.id = 1;
    embedded.fileIndex = 4;
    EXPECT_EQ(streamIndex(embedded), 4);
    Track external;
    external.id = 2;
    external.fileIndex = 0;
    external.external = true;
    Track another = external;
    another.id = 3;
    EXPECT_LT(streamIndex(external), 0);
    EXPECT_NE(streamIndex(external), streamIndex(another));
}

TEST(EngineModel, AProfileIsToldWhereMpvTellsOne) {
    std::array<char*, 4> keys = {};
    std::array<std::string, 4> names = {"type", "codec", "codec-profile", "selected"};
    std::array<std::string, 3> texts = {"audio", "aac", "LC"};
    std::array<mpv_node, 4> values = {};
    for (std::size_t key = 0; key < keys.size(); ++key) {
        keys.at(key) = names.at(key).data();
    }
    for (std::size_t text = 0; text < texts.size(); ++text) {
        values.at(text).format = MPV_FORMAT_STRING;
        values.at(text).u.string = texts.at(text).data();
    }
    values.back().format = MPV_FORMAT_FLAG;
    values.back().u.flag = 1;
    mpv_node_list map{static_cast<int>(values.size()), values.data(), keys.data()};
    mpv_node track{};
    track.format = MPV_FORMAT_NODE_MAP;
    track.u.list = &map;
    mpv_node_list list{1, &track, nullptr};
    mpv_node tracks{};
    tracks.format = MPV_FORMAT_NODE_ARRAY;
    tracks.u.list = &list;
    const auto profile = [&] {
        return monitorOf(parseTrackList(tracks)).audioMeta.value(QStringLiteral("codec_profile"));
    };
    EXPECT_EQ(profile(), QVariant(QStringLiteral("LC")));
    names.at(2)[0] = 'x';
    EXPECT_FALSE(profile().isValid()) << "an older mpv";
}

TEST(FFmpegLog, ASecretThatALongLineCutsInTwoIsMasked) {
    takeOverFFmpegLog();
    registerSecret("half of it is enough");
    const testing::LogCapture log;
    constexpr int keptBytes = 1023;
    for (const int secretBytes : {1, 7, 19}) {
        av_log(nullptr, AV_LOG_WARNING, "%*s|%s\n", keptBytes - 1 - secretBytes, "", "half of it is enough");
    }
    av_log(nullptr, AV_LOG_WARNING, "%*s|%s", keptBytes - 5, "", "half");
    const auto lines = log.messages(LogCategory::player, LogLevel::Debug);
    ASSERT_EQ(lines.size(), 4U);
    for (std::size_t line = 0; line < 3; ++line) {
        EXPECT_TRUE(lines[line].ends_with("|<redacted>")) << lines[line];
    }
    EXPECT_TRUE(lines[3].ends_with("|half")) << "a line that just fits is whole: " << lines[3];
}

} // namespace
} // namespace ondavia::engine
