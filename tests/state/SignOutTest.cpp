#include "HeldLoad.h"

#include "guide/GuideSamples.h"

namespace ondavia::testing {
namespace {

using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// While a load is held up, the account goes or another one comes.
class SignOutTest : public HeldLoadTest {
protected:
    /// What another process does to the same library.
    void elsewhere(const std::function<void(LibraryStore&)>& work) {
        const auto other = LibraryStore::open(folder.path() / "store");
        work(*other);
    }
};

TEST_F(SignOutTest, EndsASynchronisationBeforeItShowsOrStoresAnything) {
    holdSeries();
    auto loading = refresh.loadContent();
    ASSERT_TRUE(isAsked("get_series"));
    refresh.signOut();
    EXPECT_FALSE(appState.isLoading()) << "nobody waits for it any more";
    open();
    resultOf(std::move(loading));
    expectNothingStored();
    EXPECT_THAT(appState.liveCategories(), IsEmpty());
    EXPECT_EQ(appState.totalLive(), 0);
    EXPECT_FALSE(appState.toastMessage());
}

TEST_F(SignOutTest, EndsASynchronisationThatHasJustSaved) {
    holdSeries();
    auto loading = refresh.loadContent();
    ASSERT_TRUE(isAsked("get_series"));
    int changes = 0;
    QObject::connect(store.get(), &LibraryStore::changed, &content, [&](EntityKind kind) {
        if (kind == EntityKind::Channel && changes++ == 0) {
            refresh.signOut();
        }
    });
    open();
    resultOf(std::move(loading));
    EXPECT_GT(changes, 0);
    EXPECT_EQ(store->mainContext().count<Channel>(), 0);
    EXPECT_EQ(store->mainContext().count<Playlist>(), 0);
    EXPECT_EQ(appState.totalMovies(), 0);
    EXPECT_FALSE(defaults.dateForKey(lastSync));
    EXPECT_FALSE(appState.toastMessage());
}

TEST_F(SignOutTest, EndsAFailingSynchronisationWithoutAWord) {
    hold("get_series", "no list");
    auto loading = refresh.loadContent();
    ASSERT_TRUE(isAsked("get_series"));
    refresh.signOut();
    open();
    resultOf(std::move(loading));
    EXPECT_EQ(provider.requestCount("get_series"), 1) << "there is no second attempt";
    EXPECT_THAT(journal.starting("toast"), IsEmpty());
    expectNothingStored();
}

TEST_F(SignOutTest, EndsTheGuidesLoad) {
    hold(guideDocument, xmltv(programme("<title>New</title>")));
    auto loading = refresh.loadEPGIfNeeded(client());
    ASSERT_TRUE(isAsked(guideDocument));
    refresh.signOut();
    open();
    resultOf(std::move(loading));
    expectNothingStored();
}

TEST_F(SignOutTest, EndsAShortGuide) {
    hold("get_simple_data_table", R"({"epg_listings":[{"title":"News","start":"2024-01-15 12:00:00",)"
                                  R"("end":"2024-01-15 13:00:00"}]})");
    EPGService service(guide());
    auto loading = service.loadEPGFromAPI(client(), 1, "c1");
    ASSERT_TRUE(isAsked("get_simple_data_table"));
    refresh.signOut();
    open();
    resultOf(std::move(loading));
    expectNothingStored();
}

TEST_F(SignOutTest, DeletesEverythingAndTheAccount) {
    load();
    ASSERT_GT(store->mainContext().count<Channel>(), 0);
    refresh.signOut();
    EXPECT_EQ(store->mainContext().count<Channel>(), 0);
    EXPECT_EQ(store->mainContext().count<Playlist>(), 0);
    EXPECT_FALSE(appState.hasCredentials());
    EXPECT_FALSE(keychain.loadCredentials());
}

TEST_F(SignOutTest, AnotherAccountMeanwhileKeepsACatalogueOfItsOwn) {
    holdSeries();
    auto loading = refresh.loadContent();
    ASSERT_TRUE(isAsked("get_series"));
    appState.saveCredentials(provider.url(), "eva", "other");
    EXPECT_FALSE(appState.isLoading());
    provider.script("get_series", {body(listJSON(ListKind::Series, {.first = 20, .name = "Series"}))});
    load();
    EXPECT_GT(store->mainContext().count<Channel>(), 0);
    open();
    resultOf(std::move(loading));
    EXPECT_THAT(store->mainContext().distinct(&Channel::url, field(&Channel::type) == "live"),
                Each(HasSubstr("/eva/other/")));
    EXPECT_FALSE(appState.toastMessage());
}

TEST_F(SignOutTest, TheSameAccountSavedAgainEndsNothing) {
    holdSeries();
    auto loading = refresh.loadContent();
    ASSERT_TRUE(isAsked("get_series"));
    appState.saveCredentials(provider.url(), "ana", "word");
    open();
    resultOf(std::move(loading));
    EXPECT_GT(store->mainContext().count<Channel>(), 0);
    EXPECT_EQ(defaults.dateForKey(lastSync), now);
}

TEST_F(SignOutTest, OfAnotherProcessEndsASynchronisationToo) {
    holdSeries();
    auto loading = refresh.synchronise(client());
    ASSERT_TRUE(isAsked("get_series"));
    elsewhere([](LibraryStore& other) { other.setOwner(LibraryStore::nobody); });
    open();
    EXPECT_THROW(resultOf(std::move(loading)), StoreError);
    expectNothingStored();
    EXPECT_THAT(appState.liveCategories(), IsEmpty());
}

TEST_F(SignOutTest, OfAnotherProcessMeetsAFirstLoadLikeOneOfThisProcess) {
    holdSeries();
    auto loading = refresh.loadContent();
    ASSERT_TRUE(isAsked("get_series"));
    elsewhere([](LibraryStore& other) { other.setOwner(LibraryStore::nobody); });
    open();
    resultOf(std::move(loading));
    expectNothingStored();
    EXPECT_FALSE(appState.hasCredentials());
    EXPECT_FALSE(appState.isLoading());
    EXPECT_THAT(journal.starting("toast"), IsEmpty()) << "the connection is not to blame";
}

TEST_F(SignOutTest, OfAnotherProcessEndsTheGuidesLoadToo) {
    hold(guideDocument, xmltv(programme("<title>New</title>")));
    auto loading = refresh.loadGuide(client());
    ASSERT_TRUE(isAsked(guideDocument));
    elsewhere([](LibraryStore& other) { other.setOwner(LibraryStore::nobody); });
    open();
    EXPECT_THROW(resultOf(std::move(loading)), StoreError);
    expectNothingStored();
}

TEST_F(SignOutTest, OfAnotherProcessLeavesNothingForALaterRunToFill) {
    elsewhere([](LibraryStore& other) { other.setOwner(LibraryStore::nobody); });
    EXPECT_THROW(resultOf(refresh.synchronise(client())), StoreError);
    EXPECT_EQ(provider.requestCount("get_series"), 0) << "nothing is fetched in vain";
    EXPECT_THROW(resultOf(refresh.loadGuide(client())), StoreError);
    expectNothingStored();
    appState.saveCredentials(provider.url(), "eva", "other");
    resultOf(refresh.synchronise(client()));
    EXPECT_GT(store->mainContext().count<Channel>(), 0) << "the next account may";
}

TEST_F(SignOutTest, ThatTheKeyringDidNotHearOfIsCarriedOutAtTheNextStart) {
    elsewhere([](LibraryStore& other) { other.setOwner(LibraryStore::nobody); });
    ASSERT_TRUE(appState.hasCredentials());
    const LibraryRefresh next(environment(), guide());
    EXPECT_FALSE(appState.hasCredentials());
    EXPECT_FALSE(keychain.loadCredentials());
}

TEST_F(SignOutTest, AnotherAccountFindsNoCatalogueOfTheFirst) {
    load();
    ASSERT_GT(store->mainContext().count<Channel>(), 0);
    store->mainContext().insert(Favorite("main", "main_1"));
    store->mainContext().save();
    appState.saveCredentials(provider.url(), "ana", "word");
    EXPECT_GT(store->mainContext().count<Channel>(), 0) << "the same account";
    appState.saveCredentials(provider.url(), "eva", "other");
    EXPECT_EQ(store->mainContext().count<Channel>(), 0);
    EXPECT_EQ(store->mainContext().count<Favorite>(), 1);
}

TEST_F(SignOutTest, DeletesEveryKindThatItCanAndRaisesWhatItCannot) {
    load();
    EPGProgram programme;
    programme.id = "p1";
    store->mainContext().insert(programme);
    store->mainContext().save();
    std::filesystem::remove(folder.path() / "store" / "user.db");
    std::filesystem::create_directory(folder.path() / "store" / "user.db");
    EXPECT_THROW(refresh.signOut(), StoreError);
    EXPECT_EQ(store->mainContext().count<Channel>(), 0);
    EXPECT_EQ(store->mainContext().count<EPGProgram>(), 0) << "after what failed";
    EXPECT_FALSE(appState.hasCredentials());
}

TEST_F(SignOutTest, BetweenTheKeyringsAnswerAndTheClaimIsNotOverlooked) {
    const auto opened = LibraryStore::open(folder.path() / "store");
    elsewhere([](LibraryStore& other) { other.setOwner(LibraryStore::nobody); });
    opened->claim(client()->accountMark());
    EXPECT_THROW(opened->requireOwner(client()->accountMark()), StoreError);
}

} // namespace
} // namespace ondavia::testing
