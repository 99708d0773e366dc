#include "GuideServer.h"

#include "protocol/XtreamAPIClient.h"

#include <future>

namespace ondavia::testing {
namespace {

using ::testing::AnyOf;
using ::testing::ElementsAre;

constexpr std::int64_t rows = 3000;

/// A page of the server, and that somebody has asked for it.
struct Page final {
    void askedFor() { promise.set_value(); }
    /// False when nobody asks for too long.
    [[nodiscard]] bool waitUntilAskedFor() const {
        return future.wait_for(std::chrono::seconds(20)) == std::future_status::ready;
    }

    std::string path;
    std::promise<void> promise = {};
    std::shared_future<void> future = promise.get_future().share();
};

/// Loads that run side by side: each is in the middle of its work when the other one begins.
class GuideLoadsAtOnce : public GuideTest {
protected:
    /// Sends one half of a document of many programmes, and the other when `other` is asked for too; hangs up
    /// when it is not.
    void serveInHalves(Page& page, const std::string& title, const Page& other) {
        std::string body;
        for (std::int64_t row = 0; row < rows; ++row) {
            body += programme("<title>" + title + "</title>");
        }
        http.server.Get(page.path, [&page, &other, document = xmltv(body)](const auto&, auto& reply) {
            page.askedFor();
            reply.set_content_provider(
                document.size(), "application/xml",
                [&other, document](std::size_t offset, std::size_t, httplib::DataSink& sink) {
                    const std::size_t middle = document.size() / 2;
                    const std::size_t end = offset < middle ? middle : document.size();
                    return (offset < middle || other.waitUntilAskedFor()) &&
                           sink.write(document.data() + offset, end - offset);
                });
        });
    }
    std::int64_t rowsOf(const std::string& title) {
        return store->mainContext().count<EPGProgram>(field(&EPGProgram::title) == title);
    }
};

TEST_F(GuideLoadsAtOnce, LeaveOneOfTheTwoDocumentsWhole) {
    Page one{"/one.xml"};
    Page two{"/two.xml"};
    serveInHalves(one, "one", two);
    serveInHalves(two, "two", one);
    http.start();
    storeOldGuide();
    auto first = service().loadEPG(http.url(one.path));
    auto second = service().loadEPG(http.url(two.path));
    EXPECT_NO_THROW(resultOf(std::move(first)));
    EXPECT_NO_THROW(resultOf(std::move(second)));
    EXPECT_THAT(store->mainContext().distinct(&EPGProgram::title), ElementsAre(AnyOf("one", "two")));
    EXPECT_EQ(store->mainContext().count<EPGProgram>(), rows);
}

TEST_F(GuideLoadsAtOnce, OfAWholeGuideAndAShortOneLoseNothingOfTheWhole) {
    Page whole{"/whole.xml"};
    Page brief{"/player_api.php"};
    serveInHalves(whole, "whole", brief);
    http.server.Get(brief.path, [&](const auto&, httplib::Response& reply) {
        brief.askedFor();
        if (whole.waitUntilAskedFor()) {
            reply.set_content(R"({"epg_listings":[{"title":"brief","start":"2024-01-15 14:00:00",)"
                              R"("end":"2024-01-15 14:30:00"}]})",
                              "application/json");
        }
    });
    http.start();
    storeOldGuide();
    const auto client =
        std::make_shared<XtreamAPIClient>(http.url(), "some-user", "some-password", makeCurlURLSession);
    auto first = service().loadEPG(http.url(whole.path));
    auto second = service().loadEPGFromAPI(client, 77, "c2");
    EXPECT_NO_THROW(resultOf(std::move(first)));
    EXPECT_NO_THROW(resultOf(std::move(second)));
    EXPECT_EQ(rowsOf("old"), 0);
    EXPECT_EQ(rowsOf("whole"), rows);
    // Saved before the new guide came, it has gone with the old one.
    EXPECT_LE(rowsOf("brief"), 1);
    EXPECT_EQ(store->mainContext().count<EPGProgram>(), rows + rowsOf("brief"));
}

} // namespace
} // namespace ondavia::testing
