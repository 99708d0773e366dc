// External subtitle files, as a provider's server may have them.
#include "engine/EngineTestSupport.h"
#include "playback/engine/MpvPlayer.h"
#include "support/HttpServer.h"

#include <gmock/gmock.h>

#include <atomic>

namespace ondavia::testing {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;

constexpr const char* cue = "1\n00:00:00,000 --> 00:00:11,000\nLegenda\n\n";

class EngineSubtitles : public ::testing::Test {
protected:
    ~EngineSubtitles() override { isOver = true; }

    /// Cues for ever, until the test is over or nobody reads on.
    void serveWithoutEnd(const std::string& path) {
        http.server.Get(path, [this](const auto&, auto& reply) {
            reply.set_chunked_content_provider("text/plain", [this](std::size_t, httplib::DataSink& sink) {
                std::string block;
                while (block.size() < std::size_t{64} << 10) {
                    block += cue;
                }
                const bool goesOn = !isOver && sink.write(block.data(), block.size());
                endlessBytes += goesOn ? static_cast<std::int64_t>(block.size()) : 0;
                isLeft = !goesOn;
                return goesOn;
            });
        });
    }
    void serve(const std::string& path) {
        http.server.Get(path, [](const auto&, auto& reply) { reply.set_content(cue, "text/plain"); });
    }

    /// Plays the film, from a server of its own.
    void play() {
        engine->prepareToPlay();
        ASSERT_TRUE(engine.await("state:1", std::chrono::minutes(1)));
    }
    [[nodiscard]] bool playsOn() const { return engine.awaitPosition(engine->currentPlaybackTime() + 0.5); }
    [[nodiscard]] std::size_t subtitles() const {
        std::size_t count = 0;
        for (const auto& stream : engine->monitor().mediaMeta.value(QStringLiteral("streams")).toList()) {
            const QVariant type = stream.toMap().value(QStringLiteral("type"));
            count += type.toString() == QStringLiteral("timedtext") ? 1 : 0;
        }
        return count;
    }
    [[nodiscard]] bool showsSubtitles() const { return !engine->monitor().subtitleMeta.isEmpty(); }

    std::atomic<std::int64_t> endlessBytes = 0;
    std::atomic_bool isLeft = false;
    std::atomic_bool isOver = false;
    const LogCapture log;
    const MediaServer server;
    HttpServer http;
    Engine engine{MpvOutputs::Null, server.url("/file/user/word/film.mp4")};
};

TEST_F(EngineSubtitles, OfOneWithoutAnEndNoMoreIsReadThanTheBound) {
    serveWithoutEnd("/endless.srt");
    serve("/good.srt");
    http.start();
    play();
    engine->loadSubtitlesOnly({http.url("/endless.srt")});
    ASSERT_TRUE(waitUntil([this] { return endlessBytes > 0; }));
    EXPECT_TRUE(playsOn());
    EXPECT_TRUE(waitUntil([this] { return isLeft.load(); }));
    // What the sockets on the way hold comes on top.
    EXPECT_LT(endlessBytes, engine::maximumSubtitleBytes + (std::int64_t{16} << 20));
    EXPECT_FALSE(showsSubtitles());
    engine->loadThenActiveSubtitle(http.url("/good.srt"));
    EXPECT_TRUE(waitUntil([this] { return showsSubtitles(); }))
        << "one that is picked has a bound of its own";
    EXPECT_TRUE(engine->isPlaying());
}

TEST_F(EngineSubtitles, TwoHundredAreAddedWhileTheFilmPlaysOnAndNoneIsShown) {
    constexpr std::size_t files = 200;
    serve("/[0-9]+.srt");
    http.start();
    play();
    std::vector<std::string> urls;
    for (std::size_t file = 0; file < files; ++file) {
        urls.push_back(http.url("/" + std::to_string(file) + ".srt"));
    }
    engine->loadSubtitlesOnly(urls);
    EXPECT_TRUE(playsOn());
    EXPECT_TRUE(waitUntil([this] { return subtitles() == files; })) << subtitles();
    EXPECT_FALSE(showsSubtitles());
    engine->loadThenActiveSubtitle(urls.back());
    EXPECT_TRUE(waitUntil([this] { return showsSubtitles(); }));
    EXPECT_EQ(subtitles(), files) << "the one that was there";
}

TEST_F(EngineSubtitles, OneThatDidNotComeIsFetchedAnewWhenItIsPicked) {
    std::atomic_int requests = 0;
    http.server.Get("/late.srt", [&](const auto&, auto& reply) {
        if (++requests == 1) {
            reply.status = 503;
        } else {
            reply.set_content(cue, "text/plain");
        }
    });
    http.start();
    play();
    engine->loadSubtitlesOnly({http.url("/late.srt"), http.url("/late.srt")});
    ASSERT_TRUE(waitUntil([&] { return requests == 1; }));
    EXPECT_EQ(subtitles(), 0U);
    engine->loadThenActiveSubtitle(http.url("/late.srt"));
    EXPECT_TRUE(waitUntil([this] { return showsSubtitles(); }));
    engine->loadSubtitlesOnly({http.url("/late.srt")});
    EXPECT_TRUE(playsOn());
    EXPECT_EQ(requests, 2) << "one that is named twice is one";
    EXPECT_EQ(subtitles(), 1U);
}

TEST_F(EngineSubtitles, AProviderNamesNoFilesOfThisMachine) {
    http.start();
    play();
    const std::string local = Media::shared().subtitles;
    ASSERT_TRUE(local.starts_with("file://"));
    engine->loadSubtitlesOnly({local, "rtsp://127.0.0.1/x"});
    engine->loadThenActiveSubtitle(local);
    EXPECT_EQ(log.messages(LogCategory::player, LogLevel::Error).size(), 3U);
    EXPECT_THAT(log.messages(LogCategory::player, LogLevel::Error),
                Contains(HasSubstr("Not a subtitle address")).Times(3));
    EXPECT_TRUE(playsOn());
    EXPECT_EQ(subtitles(), 0U);
}

} // namespace
} // namespace ondavia::testing
