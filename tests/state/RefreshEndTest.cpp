// A refresh that goes while something of it is under way.
#include "HeldLoad.h"

#include "guide/GuideSamples.h"

namespace ondavia::testing {
namespace {

using ::testing::IsEmpty;

class RefreshEndTest : public HeldLoadTest {
protected:
    void holdLogIn() { hold("", logInReply("null")); }
    /// Begins `load`, and has the refresh go while `action` is unanswered.
    template<class Load> void leaveDuring(const char* action, const Load& load) {
        auto loading = load(*shortLived);
        ASSERT_TRUE(isAsked(action));
        shortLived.reset();
        open();
        resultOf(std::move(loading));
        EXPECT_THAT(journal.starting("toast"), IsEmpty()) << "there is nobody left to be told";
    }

    std::unique_ptr<LibraryRefresh> shortLived =
        std::make_unique<LibraryRefresh>(environment(), guide(), [this] { return now; });
};

TEST_F(RefreshEndTest, DuringTheLogInOfAFirstLoad) {
    holdLogIn();
    leaveDuring("", [](LibraryRefresh& gone) { return gone.loadContent(); });
    EXPECT_EQ(provider.requestCount("get_series"), 0);
    expectNothingStored();
}

TEST_F(RefreshEndTest, DuringTheListsOfAFirstLoad) {
    holdSeries();
    leaveDuring("get_series", [](LibraryRefresh& gone) { return gone.loadContent(); });
    expectNothingStored();
}

TEST_F(RefreshEndTest, DuringAFirstLoadThatFails) {
    hold("", "no reply");
    leaveDuring("", [](LibraryRefresh& gone) { return gone.loadContent(); });
    expectNothingStored();
}

TEST_F(RefreshEndTest, DuringTheLogInOfABackgroundRefresh) {
    cacheCatalogue();
    const auto before = defaults.dateForKey(lastSync);
    holdLogIn();
    leaveDuring("", [](LibraryRefresh& gone) { return gone.backgroundSync(); });
    EXPECT_EQ(provider.requestCount("get_series"), 0);
    EXPECT_EQ(defaults.dateForKey(lastSync), before);
}

TEST_F(RefreshEndTest, DuringTheListsOfABackgroundRefresh) {
    cacheCatalogue();
    const auto before = defaults.dateForKey(lastSync);
    holdSeries();
    leaveDuring("get_series", [](LibraryRefresh& gone) { return gone.backgroundSync(); });
    EXPECT_EQ(defaults.dateForKey(lastSync), before);
}

TEST_F(RefreshEndTest, DuringTheGuide) {
    hold(guideDocument, xmltv(programme("<title>New</title>")));
    leaveDuring(guideDocument, [&](LibraryRefresh& gone) { return gone.loadEPGIfNeeded(client()); });
    expectNothingStored();
}

TEST_F(RefreshEndTest, WhenTheNewCatalogueHasJustBeenSaved) {
    holdSeries();
    QObject::connect(store.get(), &LibraryStore::changed, &content, [this] { shortLived.reset(); });
    auto loading = shortLived->loadContent();
    ASSERT_TRUE(isAsked("get_series"));
    open();
    resultOf(std::move(loading));
    EXPECT_FALSE(shortLived);
    EXPECT_FALSE(defaults.dateForKey(lastSync));
    EXPECT_FALSE(appState.toastMessage());
}

} // namespace
} // namespace ondavia::testing
