#include "ContentFixture.h"

namespace ondavia::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* loadError = "Erro ao carregar conteúdo. Verifica a tua ligação.";

/// The overlay went down, and only then the load error was shown.
void expectToastAfterOverlay(const StateJournal& journal) {
    const auto& lines = journal.lines;
    const auto toast = std::ranges::find(lines, std::string("toast ") + loadError);
    ASSERT_NE(toast, lines.end());
    EXPECT_LT(std::ranges::find(lines, "not loading"), toast);
}

TEST_F(ContentViewModelTest, TheFirstLoadWaitsBehindTheOverlay) {
    scriptSmallCatalogue();
    load();
    EXPECT_EQ(journal.lines.front(), "loading");
    EXPECT_EQ(journal.lines.at(1), "message A carregar conteudo...");
    EXPECT_EQ(journal.lines.back(), "not loading");
    EXPECT_EQ(journal.starting("message ").back(), "message ");
    EXPECT_EQ(appState.totalLive(), 2);
    EXPECT_EQ(defaults.dateForKey(lastSync), now);
    EXPECT_FALSE(appState.toastMessage());
    EXPECT_FALSE(defaults.dateForKey("ondavia_last_epg_load")) << "the guide waits for a later load";
}

TEST_F(ContentViewModelTest, StartsOnlyWithAnAccount) {
    appState.logout();
    content.start();
    EXPECT_THAT(journal.starting("loading"), IsEmpty());
    scriptSmallCatalogue();
    appState.saveCredentials(provider.url(), "ana", "word");
    content.signedIn();
    EXPECT_TRUE(appState.isLoading());
    EXPECT_TRUE(waitUntil([&] { return !appState.isLoading(); }));
    EXPECT_EQ(appState.totalMovies(), 2);
}

TEST_F(ContentViewModelTest, AnIncompleteAccountLowersTheOverlay) {
    appState.setPassword({});
    load();
    EXPECT_THAT(journal.starting("loading"), ElementsAre("loading"));
    EXPECT_FALSE(appState.isLoading());
    EXPECT_FALSE(appState.toastMessage());
    EXPECT_FALSE(defaults.dateForKey(lastSync));
}

TEST_F(ContentViewModelTest, ASyncWithoutOverlayLeavesItAlone) {
    scriptSmallCatalogue();
    appState.setIsLoading(true);
    resultOf(refresh.performSync(false));
    EXPECT_TRUE(appState.isLoading());
    provider.script("", {failure()});
    resultOf(refresh.performSync(false));
    EXPECT_TRUE(appState.isLoading());
    EXPECT_EQ(appState.toastMessage(), loadError);
    appState.setPassword({});
    resultOf(refresh.performSync(false));
    EXPECT_TRUE(appState.isLoading());
}

struct FailedLogIn final {
    const char* name;
    Reply reply;
};

class FailedLogInTest : public ContentViewModelTest, public ::testing::WithParamInterface<FailedLogIn> {};

TEST_P(FailedLogInTest, OfAFirstLoadShowsTheSameToast) {
    provider.script("", {GetParam().reply});
    load();
    EXPECT_EQ(appState.toastMessage(), loadError);
    EXPECT_EQ(appState.toastType(), ToastType::error);
    EXPECT_FALSE(appState.isLoading());
    EXPECT_FALSE(defaults.dateForKey(lastSync));
    EXPECT_TRUE(appState.liveCategories().empty());
    EXPECT_EQ(provider.requestCount("get_series"), 0);
    expectToastAfterOverlay(journal);
}

TEST_P(FailedLogInTest, OverACachedCatalogueShowsNothing) {
    cacheCatalogue(4 * 24h);
    provider.script("", {GetParam().reply});
    load();
    journal.lines.clear();
    scheduler.runPending();
    ASSERT_TRUE(waitUntil([&] { return logsIn(); }));
    // Once more, to have its end.
    resultOf(refresh.backgroundSync());
    EXPECT_THAT(journal.lines, IsEmpty());
    EXPECT_EQ(appState.totalMovies(), 2);
    EXPECT_EQ(defaults.dateForKey(lastSync), now - 4 * 24h) << "the next start tries again";
    EXPECT_EQ(provider.requestCount("get_series"), 0);
}

INSTANTIATE_TEST_SUITE_P(LogIn, FailedLogInTest,
                         ::testing::Values(FailedLogIn{"Refused", body(R"({"user_info":{"auth":0}})")},
                                           FailedLogIn{"WithoutUser", body(R"({"server_info":{}})")},
                                           FailedLogIn{"Status401", failure(401)},
                                           FailedLogIn{"NoJSON", body("<html>")},
                                           FailedLogIn{"Cut", cutShort(logInReply("null"))}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(ContentViewModelTest, TheTimeOfASynchronisationIsThatOfItsEnd) {
    scriptSmallCatalogue();
    QObject::connect(&appState, &AppState::loadingMessageChanged, &appState, [this] { now += 1min; });
    resultOf(refresh.performSync(false));
    EXPECT_EQ(defaults.dateForKey(lastSync), now);
    now += 1min;
    resultOf(refresh.backgroundSync());
    EXPECT_EQ(defaults.dateForKey(lastSync), now);
}

TEST_F(ContentViewModelTest, AnAccountThatIsNotAcceptedIsToldAndLeavesTheFactsAlone) {
    appState.setMaxConnections(9);
    XtreamAuthResponse reply;
    EXPECT_FALSE(refresh.takeAccount(reply));
    EXPECT_EQ(appState.toastMessage(), "Conta expirada ou invalida");
    EXPECT_EQ(appState.toastType(), ToastType::error);
    appState.setToastMessage(std::nullopt);
    reply.userInfo.emplace();
    EXPECT_FALSE(refresh.takeAccount(reply)) << "no word of acceptance";
    reply.userInfo->auth = 0;
    EXPECT_FALSE(refresh.takeAccount(reply));
    EXPECT_EQ(appState.toastMessage(), "Conta expirada ou invalida");
    EXPECT_EQ(appState.maxConnections(), 9);
    appState.setToastMessage(std::nullopt);
    reply.userInfo->auth = 1;
    EXPECT_TRUE(refresh.takeAccount(reply));
    EXPECT_FALSE(appState.toastMessage());
    EXPECT_EQ(appState.maxConnections(), 1);
}

TEST_F(ContentViewModelTest, AnAccountThatTheKeyringBringsLaterIsLoadedOnceTheViewIsThere) {
    scriptSmallCatalogue();
    Q_EMIT appState.storedAccountCame();
    EXPECT_FALSE(appState.isLoading()) << "nobody looks yet";
    appState.setHasCredentials(false);
    content.start();
    EXPECT_FALSE(appState.isLoading());
    appState.setHasCredentials(true);
    Q_EMIT appState.storedAccountCame();
    EXPECT_TRUE(appState.isLoading());
    EXPECT_TRUE(waitUntil([&] { return !appState.isLoading(); }));
    EXPECT_EQ(appState.totalMovies(), 2);
}

TEST_F(ContentViewModelTest, AnUnreachableServerShowsTheToastAfterTheOverlay) {
    appState.saveCredentials("http://127.0.0.1:1", "ana", "word");
    load();
    EXPECT_EQ(appState.toastMessage(), loadError);
    expectToastAfterOverlay(journal);
}

TEST_F(ContentViewModelTest, AConnectionLostAfterTheLogInWithoutRowsShowsTheLoadError) {
    goOffline();
    load();
    EXPECT_EQ(appState.toastMessage(), loadError);
    EXPECT_FALSE(defaults.dateForKey(lastSync));
    expectToastAfterOverlay(journal);
}

TEST_F(ContentViewModelTest, AConnectionLostAfterTheLogInWithRowsUsesThemAndStampsTheTime) {
    cacheCatalogue(4 * 24h);
    goOffline();
    resultOf(refresh.backgroundSync());
    EXPECT_EQ(appState.toastMessage(), "Sem internet — a usar dados em cache");
    EXPECT_EQ(appState.toastType(), ToastType::warning);
    EXPECT_EQ(appState.totalMovies(), 2);
    EXPECT_EQ(defaults.dateForKey(lastSync), now);
}

TEST_F(ContentViewModelTest, EmptyListsShowTheLoadErrorAtAFirstLoad) {
    load();
    EXPECT_EQ(appState.toastMessage(), loadError);
    EXPECT_EQ(appState.toastType(), ToastType::error);
    EXPECT_FALSE(defaults.dateForKey(lastSync));
    expectToastAfterOverlay(journal);
}

TEST_F(ContentViewModelTest, TheAccountsFactsHoldThoughTheSynchronisationThenFails) {
    provider.script("", {body(logInReply(R"("1735689600")", R"("3")"))});
    load();
    ASSERT_EQ(appState.toastMessage(), loadError) << "all lists were empty";
    EXPECT_EQ(appState.expirationDate(), Date(1'735'689'600s));
    EXPECT_EQ(appState.maxConnections(), 3);
}

TEST_F(ContentViewModelTest, EmptyListsInTheBackgroundKeepTheOldTime) {
    cacheCatalogue(4 * 24h);
    resultOf(refresh.backgroundSync());
    EXPECT_EQ(defaults.dateForKey(lastSync), now - 4 * 24h);
    EXPECT_NE(appState.toastMessage(), loadError);
    EXPECT_THAT(storedNames(), ::testing::Contains("Old A"));
}

TEST_F(ContentViewModelTest, CachedRowsShowAtOnceAndNothingIsAskedWhenNoneIsDue) {
    cacheCatalogue();
    defaults.setStringArray("ondavia_vod_cat_order", {"Other"});
    EXPECT_FALSE(loadRefreshes());
    EXPECT_THAT(journal.lines, ElementsAre("totalLive 2", "totalMovies 2", "live News=News Art=Art"));
    EXPECT_THAT(appState.vodCategories(), IsEmpty()) << "Old is not in the order";
    EXPECT_FALSE(appState.isLoading());
    EXPECT_EQ(provider.requestCount(guideDocument), 0);
}

TEST_F(ContentViewModelTest, TheCategoriesAreThereBeforeTheNetworkIsAsked) {
    cacheCatalogue(4 * 24h);
    load();
    EXPECT_EQ(appState.liveCategories().size(), 2U);
    EXPECT_FALSE(logsIn());
    EXPECT_TRUE(loadRefreshes());
    EXPECT_THAT(journal.starting("loading"), IsEmpty()) << "no overlay covers the screen";
    EXPECT_THAT(storedNames(), ::testing::Not(::testing::Contains("Old A")));
}

TEST_F(ContentViewModelTest, ExactlyTheIntervalIsNotDueAndTheNextInstantIs) {
    constexpr auto threeDays = 259'200s;
    cacheCatalogue(threeDays);
    EXPECT_FALSE(loadRefreshes());
    defaults.setDate(lastSync, now - threeDays - 1us);
    EXPECT_TRUE(loadRefreshes());
}

TEST_F(ContentViewModelTest, AnIntervalOfZeroOrLessMeansThreeDays) {
    for (const double interval : {0.0, -5.0}) {
        cacheCatalogue(259'200s);
        defaults.setDouble("ondavia_sync_interval", interval);
        EXPECT_FALSE(loadRefreshes()) << interval;
    }
    defaults.setDate(lastSync, now - 259'201s);
    EXPECT_TRUE(loadRefreshes());
}

TEST_F(ContentViewModelTest, AStoredIntervalCounts) {
    cacheCatalogue(1h);
    defaults.setDouble("ondavia_sync_interval", 3600);
    EXPECT_FALSE(loadRefreshes());
    defaults.setDate(lastSync, now - 1h - 1s);
    EXPECT_TRUE(loadRefreshes());
}

TEST_F(ContentViewModelTest, ATimeNeverWrittenIsTheDistantPast) {
    cacheCatalogue();
    defaults.removeObjectForKey(lastSync);
    scriptSmallCatalogue();
    load();
    scheduler.runPending();
    EXPECT_TRUE(waitUntil([&] { return defaults.dateForKey(lastSync) == now; }));
}

TEST_F(ContentViewModelTest, AMissingLiveOrderForcesARefresh) {
    cacheCatalogue(1min);
    defaults.removeObjectForKey(liveOrder);
    EXPECT_TRUE(loadRefreshes());
}

TEST_F(ContentViewModelTest, AnEmptyLiveOrderIsAnOrder) {
    cacheCatalogue(1min);
    defaults.setStringArray(liveOrder, {});
    EXPECT_FALSE(loadRefreshes());
    EXPECT_TRUE(appState.liveCategories().empty());
    EXPECT_EQ(appState.totalLive(), 2);
}

TEST_F(ContentViewModelTest, OnlyTheLiveOrderIsLookedAt) {
    cacheCatalogue(1min);
    EXPECT_FALSE(defaults.stringArrayForKey("ondavia_vod_cat_order"));
    EXPECT_FALSE(loadRefreshes());
    EXPECT_THAT(appState.vodCategories(), ElementsAre(CategoryItem{"Old", "Old", 0}));
}

TEST_F(ContentViewModelTest, ABackgroundRefreshLeavesTheAccountsFactsAlone) {
    cacheCatalogue(4 * 24h);
    scriptSmallCatalogue();
    provider.script("", {body(logInReply(R"("1800000000")", R"("7")"))});
    resultOf(refresh.backgroundSync());
    EXPECT_EQ(defaults.dateForKey(lastSync), now);
    EXPECT_FALSE(appState.expirationDate());
    EXPECT_EQ(appState.maxConnections(), 1);
}

TEST_F(ContentViewModelTest, ABackgroundRefreshWithoutAnAccountDoesNothing) {
    appState.setServer({});
    resultOf(refresh.backgroundSync());
    EXPECT_THAT(journal.lines, IsEmpty());
    EXPECT_FALSE(defaults.dateForKey(lastSync));
}

TEST_F(ContentViewModelTest, ARefreshThatIsDueDoesNotOutliveTheView) {
    cacheCatalogue(4 * 24h);
    {
        LibraryRefresh shortLived(environment(), guide(), [this] { return now; });
        resultOf(shortLived.loadContent());
    }
    scheduler.runPending();
    drainEvents();
    EXPECT_FALSE(logsIn());
}

struct Fact final {
    const char* name;
    std::string json;
    std::optional<double> seconds;
};

class ExpiryTest : public ContentViewModelTest, public ::testing::WithParamInterface<Fact> {};

TEST_P(ExpiryTest, IsReadAsSecondsSince1970) {
    scriptSmallCatalogue();
    provider.script("", {body(logInReply(GetParam().json))});
    appState.setExpirationDate(Date{});
    load();
    const auto& expiry = appState.expirationDate();
    ASSERT_EQ(expiry.has_value(), GetParam().seconds.has_value());
    if (expiry) {
        EXPECT_DOUBLE_EQ(secondsSince1970(*expiry), *GetParam().seconds);
    }
}

INSTANTIATE_TEST_SUITE_P(Texts, ExpiryTest,
                         ::testing::Values(Fact{"Null", "null", std::nullopt},
                                           Fact{"Digits", R"("1735689600")", 1'735'689'600.0},
                                           Fact{"Fraction", R"("1735689600.5")", 1'735'689'600.5},
                                           Fact{"Exponent", R"("1.7e9")", 1.7e9},
                                           Fact{"Plus", R"("+5")", 5.0}, Fact{"Negative", R"("-5")", -5.0},
                                           Fact{"TwoSigns", R"("+-5")", std::nullopt},
                                           Fact{"Zero", R"("0")", 0.0}, Fact{"Empty", R"("")", std::nullopt},
                                           Fact{"Words", R"("Unlimited")", std::nullopt},
                                           Fact{"TrailingText", R"("17 days")", std::nullopt},
                                           Fact{"Blank", R"(" 17")", std::nullopt},
                                           Fact{"BeyondEveryCalendar", R"("1e300")", std::nullopt},
                                           Fact{"NotANumber", R"("nan")", std::nullopt}),
                         [](const auto& test) { return std::string(test.param.name); });

struct Connections final {
    const char* name;
    std::string json;
    std::int64_t expected;
};

class ConnectionsTest : public ContentViewModelTest, public ::testing::WithParamInterface<Connections> {};

TEST_P(ConnectionsTest, AreADecimalIntegerOrOne) {
    scriptSmallCatalogue();
    provider.script("", {body(logInReply("null", GetParam().json))});
    appState.setMaxConnections(9);
    load();
    EXPECT_EQ(appState.maxConnections(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Texts, ConnectionsTest,
                         ::testing::Values(Connections{"Three", R"("3")", 3},
                                           Connections{"Zero", R"("0")", 0}, Connections{"Empty", R"("")", 1},
                                           Connections{"Null", "null", 1},
                                           Connections{"Fraction", R"("2.5")", 1},
                                           Connections{"Words", R"("many")", 1},
                                           Connections{"TooLong", R"("99999999999999999999")", 1}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(OrderedCategories, AreSortedByTheirBytesWithoutASavedOrder) {
    EXPECT_THAT(orderedCategories({"b", "É", "a", "B", "a"}, std::nullopt),
                ElementsAre(CategoryItem{"B", "B", 0}, CategoryItem{"a", "a", 0}, CategoryItem{"b", "b", 0},
                            CategoryItem{"É", "É", 0}));
}

TEST(OrderedCategories, FollowTheSavedOrderAndLeaveOutWhatItDoesNotHold) {
    EXPECT_THAT(orderedCategories({"A", "B", "Sem Categoria"}, std::vector<std::string>{"B", "gone", "A"}),
                ElementsAre(CategoryItem{"B", "B", 0}, CategoryItem{"A", "A", 0}));
    EXPECT_THAT(orderedCategories({"A"}, std::vector<std::string>{}), IsEmpty());
}

} // namespace
} // namespace ondavia::testing
