#include "playback/engine/MpvOptions.h"
#include "playback/engine/PlaybackModel.h"

#include <gmock/gmock.h>

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
    for (const char* address :
         {"http://a/b", "HTTPS://a/b", "rtmp://a", "rtsp://a", "udp://1.2.3.4:5", "file:///tmp/x.mkv"}) {
        EXPECT_TRUE(isPlayableAddress(address)) << address;
    }
    for (const char* address : {"", "x.mkv", "/etc/passwd", "-", "edl://x", "lavfi://x", "av://x",
                                "memory://x", "lavf://x", "ffmpeg://x", "cdda://", "dvd://", "fd://0",
                                "ytdl://x", "slice://0-1@/etc/passwd", "null://", "http:/a"}) {
        EXPECT_FALSE(isPlayableAddress(address)) << address;
    }
}

TEST(EngineModel, EndCountsAsSuchOnlyNearTheKnownEnd) {
    EXPECT_EQ(reasonOfEnd(100, 100), FSFinishReason::PlaybackEnded);
    EXPECT_EQ(reasonOfEnd(97.5, 100), FSFinishReason::PlaybackEnded);
    EXPECT_EQ(reasonOfEnd(96.5, 100), FSFinishReason::PlaybackError);
    EXPECT_EQ(reasonOfEnd(7060, 7200), FSFinishReason::PlaybackEnded);
    EXPECT_EQ(reasonOfEnd(7050, 7200), FSFinishReason::PlaybackError);
    EXPECT_EQ(reasonOfEnd(3000, 7200), FSFinishReason::PlaybackError);
    EXPECT_EQ(reasonOfEnd(50, 0), FSFinishReason::PlaybackError);
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

} // namespace
} // namespace ondavia::engine
