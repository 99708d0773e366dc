#include "SyncFixture.h"

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The attempts at one list, and the waits between them.
using SyncRetriesTest = SyncFixture;

TEST_F(SyncRetriesTest, AFirstAttemptThatFailsCostsOneWaitAndOneMessage) {
    scriptSmallCatalogue();
    provider.script(
        "get_vod_streams",
        {failure(), body(listJSON(ListKind::Movies, {.first = 10, .count = 2, .name = "Movie"}))});
    sync();
    EXPECT_THAT(scheduler.requestedSleeps(), ElementsAre(2.0));
    EXPECT_THAT(journal.starting("message Tentativa"), ElementsAre("message Tentativa 2/4..."));
    EXPECT_THAT(journal.starting("toast"), IsEmpty());
    EXPECT_EQ(appState.totalMovies(), 2);
}

TEST_F(SyncRetriesTest, EveryKindOfFailureIsRetried) {
    scriptSmallCatalogue();
    const std::string good = listJSON(ListKind::Live, {.count = 2, .name = "Live"});
    provider.script("get_live_streams", {failure(404), body("<html>no</html>"), cutShort(good), body(good)});
    sync();
    EXPECT_THAT(scheduler.requestedSleeps(), ElementsAre(2.0, 4.0, 8.0));
    EXPECT_EQ(appState.totalLive(), 2) << "rows of a reply that was cut are dropped";
    EXPECT_THAT(journal.starting("toast"), IsEmpty());
}

TEST_F(SyncRetriesTest, ARetryThatTakesLongDoesNotLoseRowsThatCameBeforeTheirCategories) {
    scriptSmallCatalogue();
    provider.script("get_vod_categories", {failure(), failure(), body(categoriesJSON({{"1", "Drama"}}))});
    provider.script("get_vod_streams", {body(listJSON(ListKind::Movies, {.count = 5000, .name = "Movie"}))});
    sync();
    EXPECT_EQ(store->mainContext().count<Channel>(field(&Channel::groupTitle) == "Drama"), 5000);
    EXPECT_EQ(appState.totalMovies(), 5000);
}

TEST_F(SyncRetriesTest, ACancelledWaitGoesOnAtOnce) {
    scriptSmallCatalogue();
    provider.script("get_vod_streams", {failure()});
    leapingClock.stop();
    std::stop_source source;
    source.request_stop();
    sync(source.get_token());
    EXPECT_EQ(provider.requestCount("get_vod_streams"), 4);
    EXPECT_EQ(scheduler.now(), 0);
    EXPECT_EQ(appState.totalLive(), 2);
}

TEST_F(SyncRetriesTest, AStopDuringAWaitEndsTheWaitAndNotTheRun) {
    scriptSmallCatalogue();
    provider.script("get_vod_streams", {failure(), body(listJSON(ListKind::Movies, {}))});
    leapingClock.stop();
    std::stop_source source;
    DataSyncService service(client(), environment());
    auto run = service.syncAll(source.get_token());
    ASSERT_TRUE(waitUntil([&] { return scheduler.activeSleeps() == 1; }));
    source.request_stop();
    resultOf(std::move(run));
    EXPECT_EQ(appState.totalMovies(), 1);
    EXPECT_EQ(scheduler.now(), 0);
}

} // namespace
} // namespace ondavia::testing
