#include "HeldLoad.h"

#include "screens/shell/LoadingExit.h"

namespace ondavia::testing {
namespace {

using ::testing::IsEmpty;

/// The user leaves the load that a start or a sign-in has begun.
class LoadingExitTest : public HeldLoadTest {
protected:
    QCoro::Task<void> beginLoad(const char* heldAction = "get_series") {
        auto loading = refresh.loadContent();
        EXPECT_TRUE(isAsked(heldAction));
        EXPECT_TRUE(appState.isLoading());
        return loading;
    }
    void leave() {
        scheduler.advance(LoadingExit::secondsUntilOffered);
        ASSERT_TRUE(exit.isOffered());
        exit.take();
        EXPECT_FALSE(appState.isLoading());
        EXPECT_FALSE(exit.isOffered());
    }

    LoadingExit exit{appState, scheduler, [this] { content.leaveLoading(); }};
};

TEST_F(LoadingExitTest, IsOfferedOnceALoadHasLasted) {
    holdSeries();
    auto loading = beginLoad();
    scheduler.advance(LoadingExit::secondsUntilOffered - 0.1);
    EXPECT_FALSE(exit.isOffered());
    exit.take();
    EXPECT_TRUE(appState.isLoading()) << "not offered yet";
    scheduler.advance(0.2);
    EXPECT_TRUE(exit.isOffered());
    open();
    resultOf(std::move(loading));
    EXPECT_FALSE(exit.isOffered()) << "there is nothing left to leave";
    EXPECT_EQ(scheduler.activeTimers(), 0);
    EXPECT_GT(store->mainContext().count<Channel>(), 0);
}

TEST_F(LoadingExitTest, EndsTheSynchronisationAndKeepsWhatWasThere) {
    const Favorite favorite("ana", "main_1");
    store->mainContext().insert(favorite);
    store->mainContext().save();
    holdSeries();
    auto loading = beginLoad();
    leave();
    open();
    resultOf(std::move(loading));
    expectNothingStored();
    EXPECT_EQ(appState.totalLive(), 0);
    EXPECT_THAT(appState.liveCategories(), IsEmpty());
    EXPECT_THAT(journal.starting("toast"), IsEmpty());
    EXPECT_TRUE(appState.hasCredentials());
    EXPECT_EQ(store->mainContext().count<Favorite>(), 1);
}

TEST_F(LoadingExitTest, EndsTheSynchronisationThatIsAboutToSave) {
    holdSeries();
    auto loading = beginLoad();
    QObject::connect(&appState, &AppState::loadingMessageChanged, &exit, [this] {
        if (appState.loadingMessage() == "A guardar dados...") {
            leave();
        }
    });
    open();
    resultOf(std::move(loading));
    EXPECT_EQ(store->mainContext().count<Channel>(), 0);
    EXPECT_EQ(store->mainContext().count<Playlist>(), 0);
    EXPECT_FALSE(defaults.dateForKey(lastSync));
}

TEST_F(LoadingExitTest, LetsASynchronisationEndThatHasSaved) {
    holdSeries();
    auto loading = beginLoad();
    QObject::connect(store.get(), &LibraryStore::changed, &exit, [this](EntityKind kind) {
        if (kind == EntityKind::Channel && appState.isLoading()) {
            leave();
        }
    });
    open();
    resultOf(std::move(loading));
    EXPECT_FALSE(appState.isLoading());
    EXPECT_GT(store->mainContext().count<Channel>(), 0);
    EXPECT_EQ(store->mainContext().count<Playlist>(), 1);
    EXPECT_GT(appState.totalMovies(), 0);
    EXPECT_EQ(appState.loadingMessage(), "");
    EXPECT_EQ(defaults.dateForKey(lastSync), now);
}

TEST_F(LoadingExitTest, EndsWhileTheLogInIsAwaited) {
    hold("", logInReply("null"));
    auto loading = beginLoad("");
    leave();
    open();
    resultOf(std::move(loading));
    EXPECT_EQ(provider.requestCount("get_series"), 0);
    EXPECT_THAT(journal.starting("toast"), IsEmpty());
    expectNothingStored();
}

TEST_F(LoadingExitTest, EndsAListThatHasNoEnd) {
    provider.script("get_series", {longBody("[", R"({"series_id":1,"name":"S","category_id":"1"},)",
                                            std::size_t(1) << 40)});
    auto loading = beginLoad();
    leave();
    resultOf(std::move(loading));
    expectNothingStored();
}

TEST_F(LoadingExitTest, EndsAWaitBetweenTwoAttempts) {
    leapingClock.stop();
    provider.script("get_series", {failure()});
    auto loading = beginLoad();
    ASSERT_TRUE(waitUntil([this] { return scheduler.activeSleeps() > 0; }));
    content.leaveLoading();
    resultOf(std::move(loading));
    EXPECT_EQ(provider.requestCount("get_series"), 1) << "there is no second attempt";
    EXPECT_THAT(journal.starting("toast"), IsEmpty());
    expectNothingStored();
}

TEST_F(LoadingExitTest, ALaterLoadBeginsAnew) {
    holdSeries();
    auto left = beginLoad();
    leave();
    provider.script("get_series", {body(listJSON(ListKind::Series, {.first = 20, .name = "Series"}))});
    load();
    EXPECT_GT(store->mainContext().count<Channel>(), 0);
    EXPECT_EQ(appState.totalSeries(), 1);
    EXPECT_EQ(defaults.dateForKey(lastSync), now);
    const auto names = storedNames();
    open();
    resultOf(std::move(left));
    EXPECT_EQ(storedNames(), names);
    EXPECT_FALSE(appState.isLoading());
}

} // namespace
} // namespace ondavia::testing
