#include "subtitles/SubtitleLoader.h"

#include "support/EndlessReply.h"
#include "support/HttpServer.h"
#include "support/PatientSession.h"
#include "support/TestSupport.h"

#include <QUrl>

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
using ::testing::UnorderedElementsAre;
using namespace std::chrono_literals;

constexpr const char* oneCue = "1\n00:00:01,000 --> 00:00:02,000\nOlá\n";

std::vector<std::string> namesOf(const std::vector<SubtitleTrack>& tracks) {
    std::vector<std::string> names;
    for (const auto& track : tracks) {
        names.push_back(track.displayName);
    }
    return names;
}

/// Has one cue for every address, and nothing of HTTP.
class PlainSession final : public URLSession {
public:
    QCoro::Task<URLResponse> data(QUrl /*url*/, std::vector<Header> /*headers*/) override {
        co_return URLResponse();
    }
    URLResponse fetch(const QUrl& /*url*/, std::size_t /*limit*/, const std::atomic_bool& /*stop*/) override {
        return {};
    }
    QCoro::Task<void> stream(QUrl /*url*/, std::shared_ptr<URLBodyReader> reader,
                             std::vector<Header> /*headers*/) override {
        reader->begin(std::nullopt);
        reader->receive(oneCue);
        reader->finish();
        co_return;
    }
};

class SubtitleLoaderTest : public ::testing::Test {
protected:
    ~SubtitleLoaderTest() override {
        endless.isOver = true;
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
    void serveWithoutEnd(const std::string& name) {
        http.server.Get("/s3cr3t-word/" + name,
                        [this](const auto&, auto& reply) { endless.answer(reply, "x"); });
    }

    [[nodiscard]] std::string url(const std::string& name) const { return http.url("/s3cr3t-word/" + name); }

    QCoro::Task<std::vector<SubtitleTrack>> loading(const std::vector<std::string>& names,
                                                    std::stop_token stop = {}) {
        std::vector<std::string> urls;
        for (const auto& name : names) {
            urls.push_back(url(name));
        }
        return SubtitleLoader::loadAll(makePatientSession, urls, stop);
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
    EndlessReply endless;
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

TEST_F(SubtitleLoaderTest, TakesRepliesOfSuccessAlone) {
    for (const int status : {201, 203, 299, 300, 400, 500, 599}) {
        serve(std::to_string(status) + ".srt", oneCue, status);
    }
    http.start();
    EXPECT_THAT(namesOf(load({"201.srt", "203.srt", "299.srt", "300.srt", "400.srt", "500.srt", "599.srt"})),
                ElementsAre("201", "203", "299"));
    EXPECT_THAT(failures(), UnorderedElementsAre(HasSubstr("HTTP 300 "), HasSubstr("HTTP 400 "),
                                                 HasSubstr("HTTP 500 "), HasSubstr("HTTP 599 ")));
}

TEST_F(SubtitleLoaderTest, TakesRepliesThatHaveNoStatus) {
    const auto makeSession = [](const URLSessionConfiguration&) { return std::make_shared<PlainSession>(); };
    const auto tracks = resultOf(SubtitleLoader::loadAll(makeSession, {"file:///films/Filme.srt"}));
    EXPECT_THAT(namesOf(tracks), ElementsAre("Filme"));
}

TEST_F(SubtitleLoaderTest, LeavesOutAFileWithoutCues) {
    serve("page.srt", "<html><body>Conta expirada</body></html>");
    serve("empty.srt", "");
    http.start();
    EXPECT_THAT(load({"page.srt", "empty.srt"}), IsEmpty());
    EXPECT_THAT(failures(), ElementsAre(HasSubstr("Parsed zero cues from http://127.0.0.1:"),
                                        HasSubstr("Parsed zero cues from http://127.0.0.1:")));
}

TEST_F(SubtitleLoaderTest, ReadsUtf8WithAByteOrderMark) {
    serve("film.srt", "\xEF\xBB\xBF" + std::string(oneCue));
    http.start();
    const auto tracks = load({"film.srt"});
    ASSERT_EQ(tracks.size(), 1U);
    EXPECT_EQ(tracks[0].cues[0], (SubtitleCue{1, 2, "Olá"}));
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
        EXPECT_THAT(failure,
                    ::testing::MatchesRegex("Error loading subtitle \\(url redacted\\) code=[1-9][0-9]* "
                                            "domain=URLError"));
    }
}

TEST_F(SubtitleLoaderTest, WaitsFifteenSecondsForASilentServerAndAMinuteForAFile) {
    URLSessionConfiguration used;
    const auto makeSession = [&used](const URLSessionConfiguration& configuration) {
        used = configuration;
        return makeCurlURLSession(configuration);
    };
    serve("a.srt", oneCue);
    http.start();
    EXPECT_EQ(resultOf(SubtitleLoader::loadAll(makeSession, {url("a.srt")})).size(), 1U);
    EXPECT_EQ(used.requestTimeout, 15);
    EXPECT_EQ(used.resourceTimeout, 60);
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
    EXPECT_LT(endless.bytes, std::int64_t{SubtitleLoader::maximumLoad});
    EXPECT_GT(endless.bytes, std::int64_t{SubtitleLoader::maximumLoad / 4});
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

TEST_F(SubtitleLoaderTest, LoadsAThousandFilesThoughSomeAreLongerThanAnEvenShare) {
    constexpr int files = 1000;
    http.server.Get("/s3cr3t-word/(.*)0.srt", [](const auto&, auto& reply) {
        reply.set_content(oneCue + std::string(std::size_t{150} << 10, '\n'), "text/plain");
    });
    http.server.Get("/s3cr3t-word/.*",
                    [](const auto&, auto& reply) { reply.set_content(oneCue, "text/plain"); });
    http.start();
    std::vector<std::string> names;
    for (int file = 0; file < files; ++file) {
        names.push_back(std::to_string(file) + ".srt");
    }
    EXPECT_EQ(load(names).size(), std::size_t{files});
    EXPECT_THAT(failures(), IsEmpty());
}

TEST_F(SubtitleLoaderTest, TakesNoMoreThanTheBoundOfManyWithoutAnEnd) {
    constexpr int files = 100;
    std::vector<std::string> names;
    for (int file = 0; file < files; ++file) {
        names.push_back(std::to_string(file) + ".srt");
        serve(names.back(), std::string(std::size_t{900} << 10, 'x'));
    }
    http.start();
    EXPECT_THAT(load(names), IsEmpty());
    constexpr auto whole = SubtitleLoader::maximumLoad / (std::size_t{900} << 10);
    EXPECT_LE(std::ranges::count_if(failures(), [](const auto& text) { return text.starts_with("Parsed"); }),
              static_cast<std::ptrdiff_t>(whole));
}

TEST_F(SubtitleLoaderTest, EndsItsDownloadsWhenItIsStopped) {
    serveWithoutEnd("endless.srt");
    http.start();
    std::stop_source stop;
    auto task = loading({"endless.srt"}, stop.get_token());
    ASSERT_TRUE(waitUntil([this] { return endless.bytes > 0; }));
    stop.request_stop();
    EXPECT_THAT(resultOf(std::move(task)), IsEmpty());
    EXPECT_LT(endless.bytes, std::int64_t{SubtitleLoader::maximumLoad});
    EXPECT_THAT(failures(), ElementsAre(HasSubstr("Error loading subtitle (url redacted)")));
}

} // namespace
} // namespace ondavia::testing
