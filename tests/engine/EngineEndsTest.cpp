// What an end of a stream is taken for: the normal end, or a failure.
#include "engine/EngineTestSupport.h"

#include <gmock/gmock.h>

namespace ondavia::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::IsEmpty;

enum class Kind { Film, Channel };

/// Plays quickly to whatever end, from `position` on once something plays.
std::string endOf(const std::string& url, double position = 0, Kind kind = Kind::Film) {
    Engine engine(MpvOutputs::Null, url);
    engine->setIsLive(kind == Kind::Channel);
    engine->setPlaybackRate(4);
    engine->prepareToPlay();
    EXPECT_TRUE(engine.await("state:1", 60s)) << url;
    if (position > 0) {
        engine->setCurrentPlaybackTime(position);
    }
    waitUntil([&] { return engine.has("finish:0") || engine.has("finish:1"); }, 60s);
    return engine.events().empty() ? "nothing" : engine.events().back();
}

TEST(EngineEnds, FilmThatCameWholeEndsWell) {
    const MediaServer server;
    for (const char* name : {"film.ts", "film.mp4", "tracks.mkv", "radio.ts"}) {
        EXPECT_EQ(endOf(server.url("/file/user/word/" + std::string(name))), "finish:0") << name;
    }
}

TEST(EngineEnds, FilmCutInItsLastSecondsIsAFailure) {
    const MediaServer server;
    for (const char* name : {"film.ts", "film.mp4", "tracks.mkv"}) {
        EXPECT_EQ(endOf(server.url("/cut/98/" + std::string(name))), "finish:1") << name;
    }
}

TEST(EngineEnds, FilmWithoutALengthEndsWellAndIsOpenedOnce) {
    const MediaServer server;
    for (const char* path : {"/whole/film.ts", "/closing/film.ts", "/whole/film.mp4", "/closing/film.mp4"}) {
        const int before = server.requests();
        EXPECT_EQ(endOf(server.url(path)), "finish:0") << path;
        EXPECT_EQ(server.requests() - before, 1) << path;
    }
}

TEST(EngineEnds, ChunksWithoutTheLastOneAreAFailure) {
    const MediaServer server;
    EXPECT_EQ(endOf(server.url("/broken/98/film.ts")), "finish:1");
    EXPECT_EQ(endOf(server.url("/broken/98/film.mp4")), "finish:1");
}

TEST(EngineEnds, ChannelThatEndsCleanlyIsAFailure) {
    const MediaServer server;
    EXPECT_EQ(endOf(server.url("/whole/film.ts"), 0, Kind::Channel), "finish:1");
    EXPECT_EQ(endOf(server.url("/closing/film.ts"), 0, Kind::Channel), "finish:1");
}

TEST(EngineEnds, RecordingOfAChannelEndsWell) {
    const MediaServer server;
    EXPECT_EQ(endOf(server.url("/file/user/word/film.ts"), 0, Kind::Channel), "finish:0");
    EXPECT_EQ(endOf(server.url("/cut/98/film.ts"), 0, Kind::Channel), "finish:1");
}

TEST(EngineEnds, FilmThatWasSoughtThroughEndsByItsLastConnection) {
    const MediaServer server;
    for (const char* name : {"film.ts", "film.mp4", "tracks.mkv"}) {
        EXPECT_EQ(endOf(server.url("/file/user/word/" + std::string(name)), 9), "finish:0") << name;
        EXPECT_EQ(endOf(server.url("/cut/98/" + std::string(name)), 9), "finish:1") << name;
    }
}

TEST(EngineEnds, PlaylistOfAFilmEndsWell) {
    MediaServer server;
    server.setText("#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:12\n#EXT-X-MEDIA-SEQUENCE:0\n"
                   "#EXTINF:12,\nfile/user/word/film.ts\n#EXT-X-ENDLIST\n");
    EXPECT_EQ(endOf(server.url("/text")), "finish:0");
}

TEST(EngineEnds, PlaylistWithoutItsSegmentsIsAFailure) {
    MediaServer server;
    server.setText("#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:12\n#EXT-X-MEDIA-SEQUENCE:0\n"
                   "#EXTINF:12,\nfile/user/word/film.ts\n#EXTINF:12,\ngone.ts\n#EXT-X-ENDLIST\n");
    EXPECT_EQ(endOf(server.url("/text")), "finish:1");
}

TEST(EngineEnds, StreamThatCannotBeSoughtPlaysOnWithoutAWord) {
    const MediaServer server;
    for (const char* path : {"/whole/film.ts", "/closing/film.mp4"}) {
        const LogCapture log;
        Engine engine(MpvOutputs::Null, server.url(path));
        engine->prepareToPlay();
        ASSERT_TRUE(engine.await("firstFrame"));
        engine->setCurrentPlaybackTime(9);
        EXPECT_TRUE(engine.awaitPosition(1)) << path;
        EXPECT_LT(engine->currentPlaybackTime(), 8) << path;
        EXPECT_FALSE(engine.has("finish:0") || engine.has("finish:1")) << path;
        EXPECT_THAT(log.messages(LogCategory::player, LogLevel::Error), IsEmpty()) << path;
        EXPECT_FALSE(engine.has("state:4")) << path;
    }
}

} // namespace
} // namespace ondavia::testing
