#include "engine/EngineTestSupport.h"
#include "support/EndlessReply.h"
#include "support/HttpServer.h"

#include <gmock/gmock.h>

#include <atomic>
#include <fstream>

namespace ondavia::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::Not;

TEST(EngineFaults, RefusedConnectionIsAnError) {
    std::string url;
    {
        const SilentServer gone;
        url = gone.url("/live/user/word/1.ts");
    }
    EXPECT_EQ(outcomeOf(url), "finish:1");
}

TEST(EngineFaults, NotFoundIsAnError) {
    const MediaServer server;
    EXPECT_EQ(outcomeOf(server.url("/nowhere.ts")), "finish:1");
}

TEST(EngineFaults, PageInsteadOfAStreamIsAnError) {
    const MediaServer server;
    EXPECT_EQ(outcomeOf(server.url("/page")), "finish:1");
}

TEST(EngineFaults, MovieCutInTheMiddleIsAnErrorAndIsNotOpenedAgain) {
    const MediaServer server;
    Engine engine(MpvOutputs::Null, server.url("/cut/40/film.mp4"));
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("firstFrame"));
    const int requests = server.requests();
    ASSERT_TRUE(engine.await("finish:1"));
    EXPECT_FALSE(engine.has("finish:0"));
    EXPECT_GT(engine->currentPlaybackTime(), 1);
    EXPECT_LT(engine->currentPlaybackTime(), 8);
    EXPECT_EQ(server.requests(), requests);
}

TEST(EngineFaults, WholeMovieOverTheNetworkEndsWell) {
    const MediaServer server;
    Engine engine(MpvOutputs::Null, server.url("/file/user/word/film.mp4"));
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    engine->setCurrentPlaybackTime(10.5);
    EXPECT_TRUE(engine.await("finish:0"));
    EXPECT_FALSE(engine.has("finish:1"));
}

TEST(EngineFaults, WholeMovieOfUnknownSizeEndsWell) {
    const MediaServer server;
    for (const char* name : {"film.mp4", "tracks.mkv"}) {
        Engine engine(MpvOutputs::Null, server.url("/whole/" + std::string(name)));
        engine->setPlaybackRate(4);
        engine->prepareToPlay();
        ASSERT_TRUE(engine.await("state:1")) << name;
        EXPECT_NEAR(engine->duration(), 12, 0.3) << name;
        const int requests = server.requests();
        EXPECT_TRUE(engine.await("finish:0")) << name;
        EXPECT_FALSE(engine.has("finish:1")) << name;
        EXPECT_EQ(server.requests(), requests) << name;
    }
}

TEST(EngineFaults, MovieOfUnknownSizeCutInTheMiddleIsAnError) {
    const MediaServer server;
    Engine engine(MpvOutputs::Null, server.url("/broken/40/film.mp4"));
    engine->setPlaybackRate(4);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("finish:1"));
    EXPECT_FALSE(engine.has("finish:0"));
    EXPECT_GT(engine->currentPlaybackTime(), 1);
    EXPECT_LT(engine->currentPlaybackTime(), 8);
}

TEST(EngineFaults, ChannelOfMovieFragmentsThatClosesIsAnError) {
    const MediaServer server;
    Engine engine(MpvOutputs::Null, server.url("/short/fragments.mp4"));
    engine->setIsLive(true);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    EXPECT_TRUE(waitUntil([&] { return engine->duration() == 0; }));
    EXPECT_TRUE(engine.await("finish:1"));
    EXPECT_FALSE(engine.has("finish:0"));
}

TEST(EngineFaults, ChannelThatClosesIsAnError) {
    const MediaServer server;
    Engine engine(MpvOutputs::Null, server.url("/short/film.ts"));
    engine->setIsLive(true);
    engine->prepareToPlay();
    ASSERT_TRUE(engine.await("state:1"));
    EXPECT_TRUE(engine.await("finish:1"));
    EXPECT_FALSE(engine.has("finish:0"));
}

TEST(EngineFaults, HttpPlaylistOfSegmentsPlays) {
    MediaServer server;
    server.setText(
        "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:12\n#EXT-X-MEDIA-SEQUENCE:0\n#EXTINF:12,\n" +
        server.url("/file/user/word/film.ts") + "\n#EXT-X-ENDLIST\n");
    Engine engine(MpvOutputs::Null, server.url("/text"));
    engine->prepareToPlay();
    EXPECT_TRUE(engine.await("state:1"));
}

TEST(EngineFaults, SegmentsMayHaveAnyName) {
    for (const char* name : {"segment", "segment?token=1.php"}) {
        MediaServer server;
        server.setText(
            "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:12\n#EXT-X-MEDIA-SEQUENCE:0\n#EXTINF:12,\n" +
            server.url("/file/user/word/" + std::string(name)) + "\n#EXT-X-ENDLIST\n");
        Engine engine(MpvOutputs::Null, server.url("/text"));
        engine->prepareToPlay();
        EXPECT_TRUE(engine.await("state:1")) << name;
    }
}

TEST(EngineFaults, PlaylistWithoutAnEndHasNoDuration) {
    MediaServer server;
    server.setText(
        "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:12\n#EXT-X-MEDIA-SEQUENCE:0\n#EXTINF:12,\n" +
        server.url("/file/user/word/film.ts") + "\n");
    Engine engine(MpvOutputs::Null, server.url("/text"));
    engine->prepareToPlay();
    ASSERT_TRUE(engine.awaitPosition(0.5));
    EXPECT_EQ(engine->duration(), 0);
}

TEST(EngineFaults, APlaylistThatNeverEndsIsGivenUpAndNotKept) {
    EndlessReply endless;
    HttpServer http;
    std::atomic<int> requests = 0;
    http.server.Get("/live/list.m3u8", [&](const httplib::Request&, httplib::Response& reply) {
        ++requests;
        endless.answer(reply, "#EXTM3U\n#EXTINF:2,\nsegment.ts\n");
    });
    http.start();
    EXPECT_EQ(outcomeOf(http.url("/live/list.m3u8")), "finish:1");
    EXPECT_TRUE(waitUntil([&] { return endless.isLeft.load(); }));
    EXPECT_EQ(requests, 1) << "it is not handed on";
    EXPECT_LT(endless.bytes, std::int64_t{64} << 20);
    endless.isOver = true;
}

TEST(EngineFaults, FFmpegNeverWritesToStandardErrorByItself) {
    MediaServer server;
    server.setText("#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:12\n#EXTINF:12,\n" +
                   server.url("/file/user/word/film.ts") + "\n#EXTINF:12,\n" + server.url("/gone.ts") +
                   "\n#EXT-X-ENDLIST\n");
    const LogCapture log;
    ::testing::internal::CaptureStderr();
    {
        auto oldest = std::make_unique<Engine>(MpvOutputs::Null, Media::shared().movie);
        Engine survivor(MpvOutputs::Null, server.url("/text"));
        survivor->setPlaybackRate(4);
        survivor->prepareToPlay();
        EXPECT_TRUE(survivor.await("state:1"));
        oldest.reset();
        EXPECT_TRUE(waitForShutDownEngines(10s));
        EXPECT_TRUE(survivor.await("finish:1"));
    }
    EXPECT_TRUE(waitForShutDownEngines(10s));
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(log.text(), HasSubstr("Failed to open segment"));
}

TEST(EngineFaults, LogNeverHoldsTheAccount) {
    const MediaServer server;
    const LogCapture log;
    {
        Engine playing(MpvOutputs::Null, server.url("/file/ana/segredo/film.mp4"));
        Engine missing(MpvOutputs::Null, server.url("/ana/segredo/1234"));
        Engine query(MpvOutputs::Null, server.url("/x?username=ana&password=segredo"));
        Engine foreign(MpvOutputs::Null, "edl://ana/segredo");
        playing->prepareToPlay();
        missing->prepareToPlay();
        query->prepareToPlay();
        foreign->prepareToPlay();
        playing->loadSubtitlesOnly({server.url("/movie/ana/segredo/1.srt")});
        EXPECT_TRUE(playing.await("state:1"));
        EXPECT_TRUE(missing.await("finish:1"));
        EXPECT_TRUE(query.await("finish:1"));
    }
    EXPECT_TRUE(waitForShutDownEngines(10s));
    EXPECT_THAT(log.text(), HasSubstr("404"));
    EXPECT_THAT(log.text(), Not(HasSubstr("segredo")));
}

} // namespace
} // namespace ondavia::testing
