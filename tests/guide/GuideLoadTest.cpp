#include "GuideServer.h"

#include "guide/GuideSpool.h"
#include "store/StoreError.h"
#include "support/NoThreads.h"

#include <fcntl.h>
#include <fstream>
#include <future>
#include <map>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string twoProgrammes = programme("<title>A</title>") + programme("<title>B</title>", "elsewhere");

/// The flags of every nameless file of `folder` that this process has open.
std::vector<int> spools(const std::filesystem::path& folder) {
    std::vector<int> flags;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const std::string target = std::filesystem::read_symlink(entry.path(), gone);
        if (target.starts_with(folder.string() + "/guide-") && target.ends_with(" (deleted)")) {
            flags.push_back(fcntl(std::stoi(entry.path().filename()), F_GETFD));
        }
    }
    return flags;
}

class GuideLoad : public GuideTest {
protected:
    /// The guide stays, and who has to be told of the failure is told by its error alone.
    void expectOldGuideAfter(const std::function<void()>& failing) {
        storeOldGuide();
        const LogCapture log;
        failing();
        EXPECT_THAT(titles(), ElementsAre("old"));
        EXPECT_EQ(log.text(), "");
    }
    /// The titles in the order in which the rows were inserted.
    std::vector<std::string> titlesByKey() {
        std::map<std::int64_t, std::string> byKey;
        for (const auto& row : store->mainContext().fetchMembers<EPGProgram>({}, &EPGProgram::title)) {
            byKey.emplace(row.key, std::get<0>(row.members));
        }
        std::vector<std::string> inOrder;
        for (const auto& [key, title] : byKey) {
            inOrder.push_back(title);
        }
        return inOrder;
    }
    /// Announces `length` bytes, sends `body` and hangs up.
    void serveCut(std::string body, std::size_t length) {
        http.server.Get(
            "/xmltv.php", [body = std::move(body), length](const auto&, httplib::Response& reply) {
                reply.set_content_provider(length, "application/xml",
                                           [body](std::size_t offset, std::size_t, httplib::DataSink& sink) {
                                               return offset == 0 && sink.write(body.data(), body.size());
                                           });
            });
        http.start();
    }
};

TEST_F(GuideLoad, ReplacesTheWholeGuideInDocumentOrder) {
    storeOldGuide();
    serve(xmltv(twoProgrammes));
    load();
    EXPECT_THAT(titles(), ElementsAre("A", "B"));
    EXPECT_EQ(service().getCurrentProgram("elsewhere", utc(2024, 1, 15, 12, 30))->title, "B");
    load();
    EXPECT_THAT(titles(), ElementsAre("A", "B"));
}

TEST_F(GuideLoad, StoresTheRowsInDocumentOrder) {
    // Against the order of their times and channels, over several batches of the parser.
    constexpr int count = 1200;
    std::string body;
    std::vector<std::string> inOrder;
    for (int number = 0; number < count; ++number) {
        const int minute = count - 1 - number;
        const std::string clock = std::to_string(10'000 + minute / 60 * 100 + minute % 60).substr(1);
        const std::string title = std::to_string(number);
        body += "<programme start=\"20240115" + clock +
                "00 +0000\" stop=\"20240116000000 +0000\" channel=\"c" + std::to_string(minute % 7) +
                "\"><title>" + title + "</title></programme>\n";
        inOrder.push_back(title);
    }
    serve(xmltv(body));
    load();
    EXPECT_EQ(titlesByKey(), inOrder);
}

TEST_F(GuideLoad, OfATextThatIsNoURLChangesNothing) {
    expectOldGuideAfter([this] {
        for (const char* text : {"", "http://h/xmltv.php?password=a b", "http://[x"}) {
            EXPECT_NO_THROW(resultOf(service().loadEPG(text)));
        }
    });
}

TEST_F(GuideLoad, RaisesARefusedConnectionAndLeavesTheGuide) {
    http.start();
    const std::string url = http.url("/xmltv.php");
    http.stop();
    expectOldGuideAfter([&] { EXPECT_THROW(resultOf(service().loadEPG(url)), URLError); });
}

TEST_F(GuideLoad, RaisesACutTransferAndLeavesTheGuide) {
    serveCut(xmltv(twoProgrammes), 1'000'000);
    expectOldGuideAfter([this] { EXPECT_THROW(load(), URLError); });
}

TEST_F(GuideLoad, RaisesATransferCutAfterASyntaxErrorAndLeavesTheGuide) {
    serveCut("<tv>" + twoProgrammes + "</wrong>" + std::string(200'000, ' '), 1'000'000);
    expectOldGuideAfter([this] { EXPECT_THROW(load(), URLError); });
}

TEST_F(GuideLoad, TakesTheBodyOfAnHTTPErrorLikeAnyOther) {
    storeOldGuide();
    serve(xmltv(twoProgrammes), 500);
    load();
    EXPECT_THAT(titles(), ElementsAre("A", "B"));
}

TEST_F(GuideLoad, EmptiesTheGuideByAnErrorPage) {
    storeOldGuide();
    serve("<html><body>Not Found<br></body></html>", 404);
    load();
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(GuideLoad, EmptiesTheGuideByAnEmptyBody) {
    storeOldGuide();
    serve("");
    load();
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(GuideLoad, EmptiesTheGuideByADocumentWithoutProgrammes) {
    storeOldGuide();
    serve(xmltv("<channel id=\"c1\"/>"));
    load();
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(GuideLoad, KeepsWhatAMalformedDocumentHadBeforeItsError) {
    storeOldGuide();
    serve("<tv>" + twoProgrammes + "</wrong>" + programme("<title>C</title>"));
    load();
    EXPECT_THAT(titles(), ElementsAre("A", "B"));
}

TEST_F(GuideLoad, InflatesAGzippedDocument) {
    serve(gzipped(xmltv(programme("<title>A</title>"))) + gzipped(""));
    load();
    EXPECT_THAT(titles(), ElementsAre("A"));
}

TEST_F(GuideLoad, TakesABrokenGzipFileForTheEndOfTheDocument) {
    const std::string body = gzipped("<tv>" + twoProgrammes);
    serve(body + "rubbish");
    load();
    EXPECT_THAT(titles(), ElementsAre("A", "B"));
}

TEST_F(GuideLoad, RaisesAFailureOfTheStoreAndLeavesTheGuide) {
    storeOldGuide();
    store.reset();
    store = LibraryStore::open(folder.path() / "store", {.maximumDownloadBytes = 256 << 10});
    std::string body;
    for (int number = 0; number < 5000; ++number) {
        body += programme("<title>A title of some length, so that the file grows</title>");
    }
    serve(xmltv(body));
    const LogCapture log;
    EXPECT_THROW(load(), StoreError);
    EXPECT_THAT(titles(), ElementsAre("old"));
    EXPECT_EQ(log.text(), "");
}

TEST_F(GuideLoad, RaisesWhenTheDownloadCannotBeKept) {
    storeOldGuide();
    std::ofstream(folder.path() / "cache") << "a file in the folder's place";
    serve(xmltv(twoProgrammes));
    EXPECT_THROW(load(), std::system_error);
    EXPECT_THAT(titles(), ElementsAre("old"));
}

TEST_F(GuideLoad, ShowsTheOldGuideUntilTheNewOneIsThereAndLeavesNoFile) {
    storeOldGuide();
    std::promise<void> gate;
    const auto opened = gate.get_future().share();
    const std::string document = xmltv(twoProgrammes);
    std::atomic_bool half = false;
    http.server.Get("/xmltv.php", [&](const auto&, httplib::Response& reply) {
        reply.set_content_provider(document.size(), "application/xml",
                                   [&](std::size_t offset, std::size_t, httplib::DataSink& sink) {
                                       const std::size_t middle = document.size() - 10;
                                       if (offset > 0) {
                                           half = true;
                                           opened.wait();
                                       }
                                       const std::size_t end = offset == 0 ? middle : document.size();
                                       return sink.write(document.data() + offset, end - offset);
                                   });
    });
    http.start();
    bool done = false;
    const auto watch = [&]() -> QCoro::Task<void> {
        // The service goes while its task runs.
        const auto task = service().loadEPG(http.url("/xmltv.php"));
        co_await task;
        done = true;
    };
    const auto watching = watch();
    ASSERT_TRUE(waitUntil([&] { return half && std::filesystem::exists(folder.path() / "cache"); }));
    EXPECT_THAT(titles(), ElementsAre("old"));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path() / "cache"));
    EXPECT_THAT(spools(folder.path() / "cache"), ElementsAre(FD_CLOEXEC))
        << "programs started meanwhile get none";
    gate.set_value();
    ASSERT_TRUE(waitUntil([&] { return done; }));
    EXPECT_THAT(titles(), ElementsAre("A", "B"));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path() / "cache"));
}

TEST_F(GuideLoad, StopsWithItsWorkersAndLeavesTheGuide) {
    storeOldGuide();
    std::promise<void> gate;
    const auto opened = gate.get_future().share();
    std::atomic_bool half = false;
    http.server.Get("/xmltv.php", [&](const auto&, httplib::Response& reply) {
        reply.set_content_provider(1000, "application/xml",
                                   [&](std::size_t, std::size_t, httplib::DataSink& sink) {
                                       half = true;
                                       opened.wait();
                                       return sink.write(" ", 1);
                                   });
    });
    http.start();
    bool failed = false;
    {
        CountedThreads ownWorkers;
        EPGService stopped({*store,
                            [](const auto& configuration) { return makeCurlURLSession(configuration); },
                            folder.path() / "cache", ownWorkers});
        const auto loading = [](EPGService ownService, std::string url, bool& raised) -> QCoro::Task<void> {
            try {
                co_await ownService.loadEPG(url);
            } catch (const std::exception&) {
                raised = true;
            }
        }(stopped, http.url("/xmltv.php"), failed);
        ASSERT_TRUE(waitUntil([&] { return half.load(); }));
    }
    EXPECT_THAT(titles(), ElementsAre("old"));
    gate.set_value();
    http.stop();
    EXPECT_TRUE(waitUntil([&] { return failed; }));
    EXPECT_THAT(titles(), ElementsAre("old"));
}

TEST_F(GuideLoad, StoresMoreProgrammesThanOneBatchHolds) {
    std::string body;
    constexpr int count = 20'000;
    for (int number = 0; number < count; ++number) {
        body += programme("<title>Programa</title><desc>Uma tarde com surpresas</desc>",
                          "c" + std::to_string(number % 100));
    }
    serve(xmltv(body));
    load();
    EXPECT_EQ(store->mainContext().count<EPGProgram>(), count);
}

TEST_F(GuideLoad, KeepsTheGuideAndRaisesWhereNoThreadCanBeHad) {
    storeOldGuide();
    serve(xmltv(twoProgrammes));
    {
        const NoThreads none;
        EXPECT_THROW(load(), std::exception);
    }
    EXPECT_THAT(titles(), ElementsAre("old"));
}

TEST_F(GuideLoad, AnAbandonedDownloadThatEndsWellIsAbandoned) {
    GuideSpool spool(folder.path() / "cache");
    spool.fail();
    spool.finish();
    EXPECT_FALSE(spool.waitForEnd({}));
}

TEST_F(GuideLoad, LogsNothing) {
    const LogCapture log;
    serve("<tv>" + twoProgrammes + "</wrong>");
    load();
    EXPECT_EQ(log.text(), "");
}

} // namespace
} // namespace ondavia::testing
