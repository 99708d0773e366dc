// External subtitle files, as a provider's server may have them.
#include "engine/EngineTestSupport.h"
#include "playback/engine/ExternalSubtitles.h"
#include "playback/engine/MpvHandle.h"
#include "support/EndlessReply.h"
#include "support/HttpServer.h"

#include <QByteArray>

#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <cstring>
#include <fstream>
#include <latch>

namespace ondavia::testing {
namespace {

using engine::ExternalSubtitles;
using ::testing::Contains;
using ::testing::HasSubstr;

constexpr const char* cue = "1\n00:00:00,000 --> 00:00:11,000\nLegenda\n\n";

class EngineSubtitles : public ::testing::Test {
protected:
    ~EngineSubtitles() override { endless.isOver = true; }

    void serveWithoutEnd(const std::string& path) {
        http.server.Get(path, [this](const auto&, auto& reply) { endless.answer(reply, cue); });
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
    /// Those that are no streams of the film.
    [[nodiscard]] std::size_t subtitles() const {
        std::size_t count = 0;
        for (const auto& stream : engine->monitor().mediaMeta.value(QStringLiteral("streams")).toList()) {
            count += indexIn(stream.toMap()) < 0 ? 1 : 0;
        }
        return count;
    }
    [[nodiscard]] static int indexIn(const QVariantMap& stream) {
        return stream.value(QStringLiteral("stream_idx")).toInt();
    }
    [[nodiscard]] bool showsSubtitles() const { return !engine->monitor().subtitleMeta.isEmpty(); }
    /// The index of the subtitles that show; 0 where none do.
    [[nodiscard]] int shown() const { return indexIn(engine->monitor().subtitleMeta); }
    [[nodiscard]] std::vector<std::string> failures() const {
        return log.messages(LogCategory::player, LogLevel::Error);
    }

    EndlessReply endless;
    const LogCapture log;
    const MediaServer server;
    HttpServer http;
    Engine engine{MpvOutputs::Null, server.url("/file/user/word/tracks.mkv")};
};

TEST_F(EngineSubtitles, OfOneWithoutAnEndNoMoreIsReadThanTheBound) {
    serveWithoutEnd("/endless.srt");
    serve("/good.srt");
    http.start();
    play();
    engine->loadSubtitlesOnly({http.url("/endless.srt")});
    ASSERT_TRUE(waitUntil([this] { return endless.bytes > 0; }));
    EXPECT_TRUE(playsOn());
    EXPECT_TRUE(waitUntil([this] { return endless.isLeft.load(); }));
    // What the sockets on the way hold comes on top.
    EXPECT_LT(endless.bytes, ExternalSubtitles::maximumBytes + (std::int64_t{16} << 20));
    EXPECT_TRUE(waitUntil([this] { return !failures().empty(); }));
    EXPECT_FALSE(showsSubtitles());
    engine->loadThenActiveSubtitle(http.url("/good.srt"));
    EXPECT_TRUE(waitUntil([this] { return showsSubtitles(); }))
        << "one that is picked has a bound of its own";
    EXPECT_EQ(subtitles(), 1U) << "a part of a file is none";
    EXPECT_TRUE(engine->isPlaying());
}

TEST_F(EngineSubtitles, TwoHundredAreAddedWhileTheFilmPlaysOnAndNoneIsShown) {
    constexpr std::size_t files = ExternalSubtitles::maximumAhead;
    serve("/[0-9]+.srt");
    http.start();
    play();
    std::vector<std::string> urls;
    for (std::size_t file = 0; file < files + 30; ++file) {
        urls.push_back(http.url("/" + std::to_string(file) + ".srt"));
    }
    engine->loadSubtitlesOnly(urls);
    EXPECT_TRUE(playsOn());
    EXPECT_TRUE(waitUntil([this] { return subtitles() >= files; })) << subtitles();
    EXPECT_FALSE(showsSubtitles());
    engine->loadThenActiveSubtitle(urls.front());
    EXPECT_TRUE(waitUntil([this] { return showsSubtitles(); }));
    EXPECT_EQ(subtitles(), files) << "the one that was there, and none of those beyond";
    const int first = shown();
    engine->loadThenActiveSubtitle(urls.back());
    EXPECT_TRUE(waitUntil([&] { return shown() != first; })) << "one beyond is fetched when it is picked";
    EXPECT_EQ(subtitles(), files + 1);
}

TEST_F(EngineSubtitles, AChoiceAfterOneThatIsStillOnItsWayStands) {
    constexpr int embedded = 3;
    std::atomic_int asked = 0;
    std::array<std::latch, 3> arrivals{std::latch(1), std::latch(1), std::latch(1)};
    http.server.Get("/held/([0-9]).srt", [&](const auto& request, auto& reply) {
        ++asked;
        arrivals.at(std::stoul(request.matches[1].str())).wait();
        reply.set_content(cue, "text/plain");
    });
    serve("/here.srt");
    http.start();
    play();
    engine->loadSubtitlesOnly({http.url("/here.srt")});
    ASSERT_TRUE(waitUntil([this] { return subtitles() == 1; }));
    // Picks one that comes only after `choose`, and tells what shows when it has come.
    const auto shownAfter = [&](std::size_t held, const auto& choose) {
        engine->loadThenActiveSubtitle(http.url("/held/" + std::to_string(held) + ".srt"));
        EXPECT_TRUE(waitUntil([&] { return asked == static_cast<int>(held) + 1; }));
        choose();
        arrivals.at(held).count_down();
        EXPECT_TRUE(waitUntil([&] { return subtitles() == held + 2; }));
        EXPECT_TRUE(playsOn());
        return shown();
    };
    EXPECT_EQ(shownAfter(0, [this] { engine->closeCurrentStream("timedtext"); }), 0);
    EXPECT_EQ(shownAfter(1, [this] { engine->exchangeSelectedStream(embedded); }), embedded);
    const int other = shownAfter(2, [this] { engine->loadThenActiveSubtitle(http.url("/here.srt")); });
    engine->closeCurrentStream("timedtext");
    EXPECT_TRUE(waitUntil([this] { return !showsSubtitles(); }));
    engine->loadThenActiveSubtitle(http.url("/here.srt"));
    EXPECT_TRUE(waitUntil([this] { return showsSubtitles(); }));
    EXPECT_EQ(shown(), other);
}

TEST_F(EngineSubtitles, OneThatIsPickedBeforeTheFilmIsOpenShowsWhenBothAreThere) {
    serve("/early.srt");
    http.start();
    engine->loadSubtitlesOnly({http.url("/early.srt")});
    engine->loadThenActiveSubtitle(http.url("/early.srt"));
    play();
    EXPECT_TRUE(waitUntil([this] { return showsSubtitles(); }));
    EXPECT_EQ(subtitles(), 1U);
}

TEST_F(EngineSubtitles, OneThatWasCutIsNoneAndFetchedAnewWhenItIsPicked) {
    std::atomic_int requests = 0;
    http.server.Get("/cut.srt", [&](const auto&, auto& reply) {
        if (++requests > 1) {
            reply.set_content(cue, "text/plain");
            return;
        }
        reply.set_content_provider(4000, "text/plain",
                                   [](std::size_t offset, std::size_t, httplib::DataSink& sink) {
                                       return offset == 0 && sink.write(cue, std::strlen(cue));
                                   });
    });
    http.start();
    play();
    engine->loadSubtitlesOnly({http.url("/cut.srt")});
    EXPECT_TRUE(waitUntil([this] { return !failures().empty() || subtitles() > 0; }));
    EXPECT_TRUE(playsOn());
    engine->loadThenActiveSubtitle(http.url("/cut.srt"));
    EXPECT_TRUE(waitUntil([this] { return showsSubtitles(); }));
    EXPECT_EQ(requests, 2);
    EXPECT_EQ(subtitles(), 1U);
}

TEST_F(EngineSubtitles, AreAskedForUnderTheNameOfAPlayerAndMayComeCompressed) {
    std::string agent;
    http.server.Get("/packed.srt", [&](const auto& request, auto& reply) {
        agent = request.get_header_value("User-Agent");
        constexpr int lengthBefore = 4;
        reply.set_content(qCompress(QByteArray(cue)).mid(lengthBefore).toStdString(), "text/plain");
        reply.set_header("Content-Encoding", "deflate");
    });
    http.start();
    play();
    engine->loadThenActiveSubtitle(http.url("/packed.srt"));
    EXPECT_TRUE(waitUntil([this] { return showsSubtitles(); }));
    http.stop();
    EXPECT_EQ(agent, "VLC/3.0.16 LibVLC/3.0.16");
}

// Through mpv itself: the text that is drawn.
TEST_F(EngineSubtitles, ReadLatin1AsTheListDoes) {
    const auto path = Media::shared().folder / "velho.srt";
    std::ofstream(path) << "1\n00:00:00,000 --> 00:00:11,000\nA\xE7\xE3o \x93\n";
    auto options = engine::baseOptions();
    options.insert(options.end(), {{"vo", "null"}, {"ao", "null"}, {"sid", "1"}});
    const auto mpv = engine::MpvHandle::create(options);
    mpv->command({"loadfile", Media::shared().movie, "replace", "sub-files=" + path.string()});
    std::string shown;
    EXPECT_TRUE(waitUntil([&] {
        char* text = mpv_get_property_string(mpv->get(), "sub-text");
        shown = text != nullptr ? text : "";
        mpv_free(text);
        return !shown.empty();
    }));
    EXPECT_EQ(shown, "Ação \xC2\x93");
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
