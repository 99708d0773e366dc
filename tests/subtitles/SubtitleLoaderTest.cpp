#include "subtitles/SubtitleLoader.h"

#include "platform/linux/CurlURLSession.h"
#include "support/HttpServer.h"
#include "support/TestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <latch>
#include <mutex>

namespace ondavia::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using namespace std::chrono_literals;

constexpr const char* oneCue = "1\n00:00:01,000 --> 00:00:02,000\nOlá\n";

std::vector<std::string> namesOf(const std::vector<SubtitleTrack>& tracks) {
    std::vector<std::string> names;
    for (const auto& track : tracks) {
        names.push_back(track.displayName);
    }
    return names;
}

class SubtitleLoaderTest : public ::testing::Test {
protected:
    ~SubtitleLoaderTest() override {
        isOver = true;
        EXPECT_THAT(log.text(), Not(HasSubstr("s3cr3t-word")));
        EXPECT_TRUE(waitForTransfers(60s));
    }

    void serve(const std::string& name, const std::string& content, int status = 200) {
        http.server.Get("/s3cr3t-word/" + name, [this, content, status](const auto& request, auto& reply) {
            {
                const std::lock_guard lock(mutex);
                userAgents.push_back(request.get_header_value("User-Agent"));
                ++requests;
            }
            reply.status = status;
            reply.set_content(content, "application/octet-stream");
        });
    }
    /// Text for ever, until the test is over.
    void serveWithoutEnd(const std::string& name) {
        http.server.Get("/s3cr3t-word/" + name, [this](const auto&, auto& reply) {
            reply.set_chunked_content_provider("text/plain", [this](std::size_t, httplib::DataSink& sink) {
                const std::string block(std::size_t{64} << 10, 'x');
                const bool goesOn = !isOver && sink.write(block.data(), block.size());
                endlessBytes += goesOn ? block.size() : 0;
                return goesOn;
            });
        });
    }

    [[nodiscard]] std::string url(const std::string& name) const { return http.url("/s3cr3t-word/" + name); }

    QCoro::Task<std::vector<SubtitleTrack>> loading(const std::vector<std::string>& names,
                                                    std::stop_token stop = {}) {
        std::vector<std::string> urls;
        for (const auto& name : names) {
            urls.push_back(url(name));
        }
        // More patient than the loader is: a loaded machine may be slower than a server may be silent.
        const auto makeSession = [](const URLSessionConfiguration&) {
            return makeCurlURLSession({.requestTimeout = 600, .resourceTimeout = 600});
        };
        return SubtitleLoader::loadAll(makeSession, urls, stop);
    }
    std::vector<SubtitleTrack> load(const std::vector<std::string>& names) {
        return resultOf(loading(names));
    }
    [[nodiscard]] std::vector<std::string> failures() const {
        return log.messages(LogCategory::subtitle, LogLevel::Error);
    }

    const LogCapture log;
    std::mutex mutex;
    std::vector<std::string> userAgents;
    std::atomic_int requests = 0;
    std::atomic_bool isOver = false;
    std::atomic<std::size_t> endlessBytes = 0;
    HttpServer http;
};

TEST_F(SubtitleLoaderTest, AsksNobodyForNothing) {
    const auto tracks = resultOf(SubtitleLoader::loadAll(
        [](const URLSessionConfiguration&) -> std::shared_ptr<URLSession> {
            ADD_FAILURE();
            return nullptr;
        },
        {}));
    EXPECT_THAT(tracks, IsEmpty());
}

TEST_F(SubtitleLoaderTest, LoadsEachFileOnceUnderTheNameOfAPlayer) {
    serve("film.por.srt", oneCue);
    http.start();
    const auto tracks = load({"film.por.srt", "film.por.srt"});
    ASSERT_EQ(tracks.size(), 1U);
    EXPECT_EQ(tracks[0].url, url("film.por.srt"));
    EXPECT_EQ(tracks[0].language, "por");
    EXPECT_EQ(tracks[0].cues[0], (SubtitleCue{1, 2, "Olá"}));
    EXPECT_THAT(userAgents, ElementsAre("VLC/3.0.16 LibVLC/3.0.16"));
    EXPECT_THAT(failures(), IsEmpty());
    EXPECT_THAT(log.messages(LogCategory::subtitle, LogLevel::Debug),
                ElementsAre(HasSubstr("Loaded 1 cues from http://127.0.0.1:")));
}

TEST_F(SubtitleLoaderTest, SortsByNameCodePointByCodePoint) {
    for (const char* name : {"b.srt", "a.srt", "B.srt", "film.rus.srt", "film.spa.srt"}) {
        serve(name, oneCue);
    }
    http.start();
    EXPECT_THAT(namesOf(load({"film.rus.srt", "b.srt", "a.srt", "film.spa.srt", "B.srt"})),
                ElementsAre("B", "Español", "a", "b", "Русский"));
}

TEST_F(SubtitleLoaderTest, KeepsTheOrderOfArrivalAmongEqualNames) {
    std::latch secondWasTaken(1);
    http.server.Get("/s3cr3t-word/1/x.srt", [&](const auto&, auto& reply) {
        secondWasTaken.wait();
        reply.set_content(oneCue, "text/plain");
    });
    serve("2/x.srt", oneCue);
    http.start();
    auto task = loading({"1/x.srt", "2/x.srt"});
    EXPECT_TRUE(waitUntil([this] { return !log.messages(LogCategory::subtitle, LogLevel::Debug).empty(); }));
    secondWasTaken.count_down();
    const auto tracks = resultOf(std::move(task));
    ASSERT_EQ(tracks.size(), 2U);
    EXPECT_EQ(tracks[0].url, url("2/x.srt"));
}

TEST_F(SubtitleLoaderTest, ReadsLatin1WhereItIsNoUtf8) {
    serve("velho.srt", "1\n00:00:01,000 --> 00:00:02,000\nA\xE7\xE3o\n");
    http.start();
    const auto tracks = load({"velho.srt"});
    ASSERT_EQ(tracks.size(), 1U);
    EXPECT_EQ(tracks[0].cues[0].text, "Ação");
}

TEST_F(SubtitleLoaderTest, LeavesOutARefusalThoughItHasCues) {
    serve("gone.srt", oneCue, 404);
    serve("here.srt", oneCue);
    http.start();
    EXPECT_THAT(namesOf(load({"gone.srt", "here.srt"})), ElementsAre("here"));
    EXPECT_THAT(failures(), ElementsAre(HasSubstr("HTTP 404 loading http://127.0.0.1:")));
}

TEST_F(SubtitleLoaderTest, LeavesOutAFileWithoutCues) {
    serve("page.srt", "<html><body>Conta expirada</body></html>");
    http.start();
    EXPECT_THAT(load({"page.srt"}), IsEmpty());
    EXPECT_THAT(failures(), ElementsAre(HasSubstr("Parsed zero cues from http://127.0.0.1:")));
}

TEST_F(SubtitleLoaderTest, TellsNoAddressOfAFailure) {
    http.start();
    const std::string lost = url("lost.srt");
    http.stop();
    const auto makeSession = [](const URLSessionConfiguration& configuration) {
        return makeCurlURLSession(configuration);
    };
    EXPECT_THAT(resultOf(SubtitleLoader::loadAll(makeSession, {lost, "no address", "file:///etc/passwd"})),
                IsEmpty());
    EXPECT_EQ(failures().size(), 3U);
    for (const auto& failure : failures()) {
        EXPECT_THAT(failure, ::testing::MatchesRegex("Error loading subtitle \\(url redacted\\) code=[0-9]+ "
                                                     "domain=URLError"));
    }
}

TEST_F(SubtitleLoaderTest, WaitsFifteenSecondsForASilentServer) {
    double silence = 0;
    const auto makeSession = [&silence](const URLSessionConfiguration& configuration) {
        silence = configuration.requestTimeout;
        return makeCurlURLSession(configuration);
    };
    serve("a.srt", oneCue);
    http.start();
    EXPECT_EQ(resultOf(SubtitleLoader::loadAll(makeSession, {url("a.srt")})).size(), 1U);
    EXPECT_EQ(silence, 15);
}

TEST_F(SubtitleLoaderTest, AsksForAllFilesAtOnce) {
    constexpr int files = 6;
    std::latch allAsked(files);
    http.server.Get("/s3cr3t-word/.*", [&](const auto&, auto& reply) {
        allAsked.arrive_and_wait();
        reply.set_content(oneCue, "text/plain");
    });
    http.start();
    std::vector<std::string> names;
    for (int file = 0; file < files; ++file) {
        names.push_back(std::to_string(file) + ".srt");
    }
    EXPECT_EQ(load(names).size(), std::size_t{files});
}

TEST_F(SubtitleLoaderTest, TakesNoMoreThanItsShareOfOneWithoutAnEndAndLoadsTheOthers) {
    serveWithoutEnd("endless.srt");
    serve("large.srt", oneCue + ("\n" + std::string(std::size_t{20} << 20, 'y')));
    serve("film.por.srt", oneCue);
    http.start();
    EXPECT_THAT(namesOf(load({"endless.srt", "large.srt", "film.por.srt"})),
                ElementsAre("Português", "large"));
    EXPECT_THAT(failures(), ElementsAre(HasSubstr("Error loading subtitle (url redacted)")));
    // What the sockets on the way hold comes on top of a third.
    EXPECT_LT(endlessBytes, SubtitleLoader::maximumLoad);
    EXPECT_GT(endlessBytes, SubtitleLoader::maximumLoad / 4);
}

TEST_F(SubtitleLoaderTest, LoadsAFileOfFiftyMegabytes) {
    std::string large;
    while (large.size() < std::size_t{50} << 20) {
        large += "00:00:01,000 --> 00:00:02,000\n" + std::string(3000, 'y') + "\n\n";
    }
    serve("large.srt", large);
    http.start();
    const auto tracks = load({"large.srt"});
    ASSERT_EQ(tracks.size(), 1U);
    EXPECT_GT(tracks[0].cues.size(), 17000U);
}

TEST_F(SubtitleLoaderTest, LoadsTwoHundredFiles) {
    http.server.Get("/s3cr3t-word/.*", [](const auto&, auto& reply) {
        reply.set_content(oneCue + std::string(100000, '\n'), "text/plain");
    });
    http.start();
    std::vector<std::string> names;
    for (int file = 0; file < 200; ++file) {
        names.push_back(std::to_string(file) + ".srt");
    }
    EXPECT_EQ(load(names).size(), 200U);
    EXPECT_THAT(failures(), IsEmpty());
}

TEST_F(SubtitleLoaderTest, EndsItsDownloadsWhenItIsStopped) {
    serveWithoutEnd("endless.srt");
    http.start();
    std::stop_source stop;
    auto task = loading({"endless.srt"}, stop.get_token());
    ASSERT_TRUE(waitUntil([this] { return endlessBytes > 0; }));
    stop.request_stop();
    EXPECT_THAT(resultOf(std::move(task)), IsEmpty());
    EXPECT_LT(endlessBytes, SubtitleLoader::maximumLoad);
    EXPECT_THAT(failures(), IsEmpty()) << "nothing failed";
}

} // namespace
} // namespace ondavia::testing
