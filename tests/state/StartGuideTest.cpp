#include "ContentFixture.h"

#include "guide/GuideSamples.h"
#include "store/StoreSamples.h"

#include <atomic>

namespace ondavia::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr auto threeDays = 259'200s;

/// When the start loads the guide, and what becomes of it.
class StartGuideTest : public ContentViewModelTest {
protected:
    explicit StartGuideTest(const StoreOptions& options = {})
        : ContentViewModelTest(options) {
        provider.script(guideDocument, {body(xmltv(programme("<title>New</title>")))});
        store->mainContext().insert(oldProgram());
        store->mainContext().save();
    }

    static EPGProgram oldProgram() {
        EPGProgram program;
        program.id = "old";
        program.channelId = "c1";
        program.title = "Old";
        return program;
    }
    /// Loads the guide if that is due; whether it was asked for.
    bool guideIsDue() {
        const int before = provider.requestCount(guideDocument);
        resultOf(refresh.loadEPGIfNeeded(client()));
        return provider.requestCount(guideDocument) > before;
    }
    std::vector<std::string> guideTitles() { return titlesOf(store->mainContext().fetch<EPGProgram>()); }
    void expectOldGuide() {
        EXPECT_THAT(guideTitles(), ElementsAre("Old"));
        EXPECT_FALSE(defaults.dateForKey(lastGuideLoad)) << "the next start tries again";
        EXPECT_FALSE(appState.toastMessage());
    }
};

TEST_F(StartGuideTest, OverACachedCatalogueLoadsItWithoutWaiting) {
    cacheCatalogue();
    defaults.removeObjectForKey(lastGuideLoad);
    load();
    EXPECT_EQ(provider.requestCount(guideDocument), 0);
    scheduler.runPending();
    EXPECT_TRUE(waitUntil([&] { return defaults.dateForKey(lastGuideLoad) == now; }));
    EXPECT_THAT(guideTitles(), ElementsAre("New"));
    EXPECT_FALSE(logsIn()) << "a guide needs no log-in";
    EXPECT_FALSE(appState.isLoading());
}

TEST_F(StartGuideTest, OfADamagedOneDoesNotWaitForItsTime) {
    const auto place = folder.path() / "damaged";
    (void)LibraryStore::open(place);
    scribble(std::filesystem::canonical(place / "guide.db"), 0, 4096);
    auto other = LibraryStore::open(place);
    ASSERT_THAT(other->openReport().rebuiltFiles, ElementsAre(StoreFile::Guide));
    defaults.setDate(lastGuideLoad, now);
    ASSERT_FALSE(guideIsDue());
    std::swap(store, other);
    {
        LibraryRefresh next{environment(), guide(), [this] { return now; }};
        resultOf(next.loadEPGIfNeeded(client()));
        EXPECT_THAT(guideTitles(), ElementsAre("New"));
    }
    std::swap(store, other);
}

TEST_F(StartGuideTest, WaitsForARefreshThatIsDueAndIsAskedForOnce) {
    cacheCatalogue(4 * 24h);
    scriptSmallCatalogue();
    defaults.removeObjectForKey(lastGuideLoad);
    std::atomic<int> seriesRequestsBefore = -1;
    provider.script(guideDocument, {[&](const httplib::Request&, httplib::Response& reply) {
                        seriesRequestsBefore = provider.requestCount("get_series");
                        reply.set_content(xmltv(programme("<title>New</title>")), "application/xml");
                    }});
    load();
    scheduler.runPending();
    // The refresh stamps its time before it asks for the guide.
    ASSERT_TRUE(waitUntil([&] { return defaults.dateForKey(lastSync) == now; }));
    ASSERT_TRUE(waitUntil([&] { return defaults.dateForKey(lastGuideLoad) == now; }));
    drainEvents();
    EXPECT_EQ(seriesRequestsBefore, 1);
    EXPECT_EQ(provider.requestCount(guideDocument), 1);
    EXPECT_THAT(guideTitles(), ElementsAre("New"));
}

TEST_F(StartGuideTest, TheTimeOfALoadIsThatOfItsEnd) {
    QObject::connect(store.get(), &LibraryStore::changed, store.get(), [this] { now += 5min; });
    const Date begin = now;
    EXPECT_TRUE(guideIsDue());
    EXPECT_EQ(defaults.dateForKey(lastGuideLoad), now);
    EXPECT_GT(now, begin);
}

TEST_F(StartGuideTest, WithoutAnAccountAsksForNone) {
    cacheCatalogue();
    defaults.removeObjectForKey(lastGuideLoad);
    appState.setPassword({});
    load();
    scheduler.runPending();
    drainEvents();
    EXPECT_EQ(provider.requestCount(guideDocument), 0);
    expectOldGuide();
}

TEST_F(StartGuideTest, ExactlyTheIntervalIsNotDueAndTheNextInstantIs) {
    defaults.setDate(lastGuideLoad, now - threeDays);
    EXPECT_FALSE(guideIsDue());
    EXPECT_THAT(guideTitles(), ElementsAre("Old"));
    defaults.setDate(lastGuideLoad, now - threeDays - 1us);
    EXPECT_TRUE(guideIsDue());
    EXPECT_THAT(guideTitles(), ElementsAre("New"));
    EXPECT_EQ(defaults.dateForKey(lastGuideLoad), now);
}

TEST_F(StartGuideTest, AnIntervalOfZeroOrLessMeansThreeDays) {
    for (const double interval : {0.0, -5.0}) {
        defaults.setDouble("ondavia_epg_interval", interval);
        defaults.setDate(lastGuideLoad, now - threeDays);
        EXPECT_FALSE(guideIsDue()) << interval;
        defaults.setDate(lastGuideLoad, now - threeDays - 1s);
        EXPECT_TRUE(guideIsDue()) << interval;
    }
}

TEST_F(StartGuideTest, AStoredIntervalCountsAndTheCataloguesDoesNot) {
    defaults.setDouble("ondavia_epg_interval", 3600);
    defaults.setDouble("ondavia_sync_interval", 60);
    defaults.setDate(lastGuideLoad, now - 1h);
    EXPECT_FALSE(guideIsDue());
    defaults.setDate(lastGuideLoad, now - 1h - 1s);
    EXPECT_TRUE(guideIsDue());
}

TEST_F(StartGuideTest, ATransportFailureKeepsGuideAndTime) {
    provider.script(guideDocument, {cutShort(xmltv(programme("<title>New</title>")))});
    EXPECT_TRUE(guideIsDue());
    expectOldGuide();
}

TEST_F(StartGuideTest, AnHTTPErrorsPageCountsAsAGuide) {
    provider.script(guideDocument, {failure(503)});
    EXPECT_TRUE(guideIsDue());
    EXPECT_THAT(guideTitles(), IsEmpty());
    EXPECT_EQ(defaults.dateForKey(lastGuideLoad), now);
}

TEST_F(StartGuideTest, AMalformedDocumentCountsAsAGuide) {
    provider.script(guideDocument, {body("<tv>" + programme("<title>First</title>") + "</wrong>")});
    EXPECT_TRUE(guideIsDue());
    EXPECT_THAT(guideTitles(), ElementsAre("First"));
    EXPECT_EQ(defaults.dateForKey(lastGuideLoad), now);
}

TEST_F(StartGuideTest, AnAddressThatIsNoURLCountsAsSuccess) {
    appState.saveCredentials("http://no url", "ana", "word");
    EXPECT_FALSE(guideIsDue());
    EXPECT_THAT(guideTitles(), ElementsAre("Old"));
    EXPECT_EQ(defaults.dateForKey(lastGuideLoad), now);
}

class GuideIntoAFullStoreTest : public StartGuideTest {
protected:
    GuideIntoAFullStoreTest()
        : StartGuideTest({.maximumDownloadBytes = 256 << 10}) {}
};

TEST_F(GuideIntoAFullStoreTest, KeepsGuideAndTime) {
    std::string rows;
    for (int row = 0; row < 5000; ++row) {
        rows += programme("<title>A title of some length</title><desc>Words</desc>");
    }
    provider.script(guideDocument, {body(xmltv(rows))});
    EXPECT_TRUE(guideIsDue());
    expectOldGuide();
}

TEST_F(StartGuideTest, AFirstLoadLeavesItAlone) {
    scriptSmallCatalogue();
    load();
    scheduler.runPending();
    drainEvents();
    EXPECT_EQ(appState.totalLive(), 2);
    EXPECT_EQ(provider.requestCount(guideDocument), 0);
    expectOldGuide();
}

TEST_F(StartGuideTest, FollowsARefreshOfTheCatalogue) {
    cacheCatalogue(4 * 24h);
    scriptSmallCatalogue();
    defaults.removeObjectForKey(lastGuideLoad);
    bool catalogueWasFirst = false;
    provider.script(guideDocument, {[&](const httplib::Request&, httplib::Response& reply) {
                        catalogueWasFirst = provider.requestCount("get_series") > 0;
                        reply.set_content(xmltv(programme("<title>New</title>")), "application/xml");
                    }});
    resultOf(refresh.backgroundSync());
    EXPECT_TRUE(catalogueWasFirst);
    EXPECT_EQ(defaults.dateForKey(lastSync), now);
    EXPECT_EQ(defaults.dateForKey(lastGuideLoad), now);
    EXPECT_THAT(guideTitles(), ElementsAre("New"));
}

TEST_F(StartGuideTest, FollowsARefreshThatIsRefused) {
    cacheCatalogue(4 * 24h);
    defaults.removeObjectForKey(lastGuideLoad);
    provider.script("", {failure(401)});
    resultOf(refresh.backgroundSync());
    EXPECT_EQ(defaults.dateForKey(lastSync), now - 4 * 24h);
    EXPECT_EQ(defaults.dateForKey(lastGuideLoad), now);
}

TEST_F(StartGuideTest, FollowsARefreshWithEmptyLists) {
    cacheCatalogue(4 * 24h);
    defaults.removeObjectForKey(lastGuideLoad);
    resultOf(refresh.backgroundSync());
    EXPECT_EQ(defaults.dateForKey(lastSync), now - 4 * 24h) << "all lists were empty";
    EXPECT_EQ(defaults.dateForKey(lastGuideLoad), now);
    EXPECT_THAT(guideTitles(), ElementsAre("New"));
}

TEST_F(StartGuideTest, IsNotAskedForByARefreshWhenItIsNotDue) {
    cacheCatalogue(4 * 24h);
    scriptSmallCatalogue();
    resultOf(refresh.backgroundSync());
    EXPECT_EQ(provider.requestCount(guideDocument), 0);
}

} // namespace
} // namespace ondavia::testing
