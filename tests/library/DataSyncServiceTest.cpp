#include "SyncFixture.h"
#include "library/SyncError.h"
#include "support/MarkedTexts.h"

#include <atomic>
#include <ctime>
#include <sqlite3.h>
#include <thread>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* genericToast = "toast Erro ao sincronizar. Verifica a tua ligação e tenta novamente.";
constexpr const char* moviesToast = "toast Nao foi possivel carregar filmes";
constexpr const char* seriesToast = "toast Nao foi possivel carregar series";

/// Processor time of the calling thread so far.
double threadSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// Counts the new files of the catalogue that are closed while it lives, by this thread and by others.
class ClosedFiles final {
public:
    ClosedFiles() {
        counts().here = 0;
        counts().elsewhere = 0;
        counts().thread = std::this_thread::get_id();
        sqlite3_auto_extension(entry());
    }
    ~ClosedFiles() { sqlite3_cancel_auto_extension(entry()); }
    ClosedFiles(const ClosedFiles&) = delete;
    ClosedFiles& operator=(const ClosedFiles&) = delete;

    [[nodiscard]] int here() const { return counts().here; }
    [[nodiscard]] int elsewhere() const { return counts().elsewhere; }

private:
    /// Files may be closed later than the object.
    struct Counts final {
        std::thread::id thread;
        std::atomic_int here;
        std::atomic_int elsewhere;
    };

    static Counts& counts() {
        static Counts all;
        return all;
    }
    static int watch(sqlite3* file, char** /*error*/, const sqlite3_api_routines* /*routines*/) {
        return sqlite3_trace_v2(file, SQLITE_TRACE_CLOSE, &noteClosed, nullptr);
    }
    static int noteClosed(unsigned /*event*/, void* /*context*/, void* file, void* /*none*/) {
        const std::string_view name = sqlite3_db_filename(static_cast<sqlite3*>(file), "main");
        if (name.find("/catalogue-") != std::string_view::npos) {
            ++(std::this_thread::get_id() == counts().thread ? counts().here : counts().elsewhere);
        }
        return 0;
    }
    static void (*entry())() { return reinterpret_cast<void (*)()>(&watch); }
};

class DataSyncServiceTest : public SyncFixture {
protected:
    using SyncFixture::SyncFixture;

    std::optional<std::vector<std::string>> savedOrder(const char* key) const {
        return defaults.stringArrayForKey(key);
    }
    /// The case of the SyncError that a run raises.
    std::optional<SyncError::Case> syncErrorOfRun() {
        try {
            sync();
        } catch (const SyncError& error) {
            return error.errorCase();
        }
        return std::nullopt;
    }
};

TEST_F(DataSyncServiceTest, ShowsItsProgressInOrder) {
    std::optional<std::vector<std::string>> seriesOrderWhenProcessing;
    QObject::connect(&appState, &AppState::loadingMessageChanged, &appState, [&] {
        if (appState.loadingMessage().starts_with("A processar")) {
            seriesOrderWhenProcessing = savedOrder(DataSyncService::seriesOrderKey);
        }
    });
    scriptSmallCatalogue();
    sync();
    EXPECT_THAT(journal.lines,
                ElementsAre("message A carregar conteudo...", "live 1=News 2=Sport", "vod 1=Drama",
                            "series 1=Long", "message A processar 5 itens...", "message A guardar dados...",
                            "totalLive 2", "totalMovies 2", "totalSeries 1", "message "));
    EXPECT_EQ(seriesOrderWhenProcessing, std::vector<std::string>{"Long"});
    EXPECT_EQ(savedOrder(DataSyncService::liveOrderKey), (std::vector<std::string>{"News", "Sport"}));
    EXPECT_EQ(savedOrder(DataSyncService::vodOrderKey), std::vector<std::string>{"Drama"});
    EXPECT_THAT(appState.liveCategories(),
                ElementsAre(CategoryItem{"1", "News", 0}, CategoryItem{"2", "Sport", 0}))
        << "the browsers count for themselves";
    EXPECT_TRUE(scheduler.requestedSleeps().empty());
}

TEST_F(DataSyncServiceTest, ReplacesTheWholeCatalogueAndLeavesTheRestAlone) {
    storeEarlierCatalogue();
    const Favorite favourite("main", "main_Old A");
    const WatchHistory watched("main", "main_10", 30, 60, "movie");
    EPGProgram programme;
    programme.id = "p";
    Channel opened;
    opened.id = "main_10";
    opened.addedAt = Date(std::chrono::seconds(1'000'000'000));
    opened.lastAccessedAt = opened.addedAt;
    store->mainContext().insert(opened);
    store->mainContext().insert(favourite);
    store->mainContext().insert(watched);
    store->mainContext().insert(programme);
    store->mainContext().save();
    const Date before = currentDate();
    scriptSmallCatalogue();
    sync();
    EXPECT_THAT(storedNames(), ElementsAre("Live 1", "Live 2", "Movie 10", "Movie 11", "Series 20"));
    EXPECT_THAT(store->mainContext().fetch<Favorite>(), ElementsAre(favourite));
    EXPECT_THAT(store->mainContext().fetch<WatchHistory>(), ElementsAre(watched));
    EXPECT_THAT(store->mainContext().fetch<EPGProgram>(), ElementsAre(programme));
    for (const Channel& channel : store->mainContext().fetch<Channel>()) {
        EXPECT_GE(channel.addedAt, before);
        EXPECT_FALSE(channel.lastAccessedAt);
    }
    const auto movie = store->mainContext().fetchFirst<Channel>({.where = field(&Channel::id) == "main_10"});
    ASSERT_TRUE(movie);
    EXPECT_EQ(movie->groupTitle, "Drama");
    EXPECT_EQ(movie->playlistId, "main");
}

TEST_F(DataSyncServiceTest, AFavouriteFindsItsItemAgainInTheNextCatalogue) {
    const auto favourite = [this] {
        const auto kept = store->mainContext().fetchFirst<Favorite>();
        return store->mainContext().fetchFirst<Channel>({.where = field(&Channel::id) == kept->channelId});
    };
    scriptSmallCatalogue();
    sync();
    const auto film =
        store->mainContext().fetchFirst<Channel>({.where = field(&Channel::name) == "Movie 11"});
    ASSERT_TRUE(film);
    store->mainContext().insert(Favorite("main", film->id));
    store->mainContext().save();
    // Elsewhere in the list, and under another name.
    provider.script("get_vod_streams",
                    {body(R"([{"num":1,"name":"Renamed","stream_id":11,"category_id":"9"}])")});
    sync();
    ASSERT_TRUE(favourite());
    EXPECT_EQ(favourite()->name, "Renamed");
}

TEST_F(DataSyncServiceTest, MakesThePlaylistOnceAndKeepsTheDayItCame) {
    const Date before = currentDate();
    scriptSmallCatalogue();
    sync();
    const auto first = playlist();
    ASSERT_TRUE(first);
    EXPECT_GE(first->addedAt, before);
    EXPECT_EQ(*first,
              (Playlist{"main", "Principal", "xtream", true, "main", 5, first->addedAt, first->addedAt}));
    provider.script("get_series", {body("[]")});
    sync();
    const auto second = playlist();
    EXPECT_EQ(second->channelCount, 4);
    EXPECT_EQ(second->addedAt, first->addedAt);
    EXPECT_GT(second->lastUpdatedAt, first->lastUpdatedAt);
    EXPECT_EQ(store->mainContext().count<Playlist>(), 1);
}

TEST_F(DataSyncServiceTest, FourFailuresWaitFourteenSecondsAndLoseThatListAlone) {
    storeEarlierCatalogue();
    scriptSmallCatalogue();
    provider.script("get_vod_streams", {failure()});
    sync();
    EXPECT_THAT(scheduler.requestedSleeps(), ElementsAre(2.0, 4.0, 8.0));
    EXPECT_EQ(provider.requestCount("get_vod_streams"), 4);
    EXPECT_THAT(
        journal.starting("message Tentativa"),
        ElementsAre("message Tentativa 2/4...", "message Tentativa 3/4...", "message Tentativa 4/4..."));
    EXPECT_THAT(journal.starting("toast"), ElementsAre(genericToast, moviesToast));
    EXPECT_EQ(appState.toastType(), ToastType::warning);
    EXPECT_THAT(storedNames(), ElementsAre("Live 1", "Live 2", "Series 20"));
    EXPECT_EQ(appState.totalMovies(), 0);
    EXPECT_EQ(appState.loadingMessage(), "");
}

TEST_F(DataSyncServiceTest, AnAddressThatIsNoURLIsRetriedToo) {
    appState.saveCredentials("http://not an address", "ana", "word");
    EXPECT_EQ(syncErrorOfRun(), SyncError::Case::emptyResponse);
    EXPECT_EQ(scheduler.requestedSleeps().size(), 18U);
    EXPECT_THAT(journal.starting("toast").back(), seriesToast);
}

TEST_F(DataSyncServiceTest, TheSeriesToastIsTheLastWhenBothAreMissing) {
    scriptSmallCatalogue();
    provider.script("get_vod_streams", {body("[]")});
    provider.script("get_series", {body("")});
    sync();
    EXPECT_THAT(journal.starting("toast"), ElementsAre(moviesToast, seriesToast));
    EXPECT_EQ(appState.toastType(), ToastType::warning);
    EXPECT_TRUE(scheduler.requestedSleeps().empty()) << "an empty list is a success";
}

TEST_F(DataSyncServiceTest, ACategoryListThatFailedLeavesItsRowsWithoutCategory) {
    scriptSmallCatalogue();
    provider.script("get_vod_categories", {failure()});
    appState.setToastType(ToastType::error);
    sync();
    EXPECT_THAT(journal.starting("toast"), ElementsAre(genericToast));
    EXPECT_EQ(appState.toastType(), ToastType::warning);
    EXPECT_THAT(store->mainContext().distinct(&Channel::groupTitle, field(&Channel::type) == "movie"),
                ElementsAre("Sem Categoria"));
    EXPECT_TRUE(appState.vodCategories().empty());
    EXPECT_EQ(savedOrder(DataSyncService::vodOrderKey), std::vector<std::string>{});
}

TEST_F(DataSyncServiceTest, EmptyBodiesPreserveTheCatalogueButNotTheCategories) {
    storeEarlierCatalogue();
    appState.setLiveCategories({{"1", "Before", 0}});
    defaults.setStringArray(DataSyncService::liveOrderKey, {"Before"});
    appState.setTotalMovies(2);
    EXPECT_EQ(syncErrorOfRun(), SyncError::Case::emptyResponse);
    EXPECT_THAT(storedNames(), ElementsAre("Old A", "Old B"));
    EXPECT_TRUE(appState.liveCategories().empty());
    for (const char* key :
         {DataSyncService::liveOrderKey, DataSyncService::vodOrderKey, DataSyncService::seriesOrderKey}) {
        EXPECT_EQ(savedOrder(key), std::vector<std::string>{}) << key;
    }
    EXPECT_EQ(appState.totalMovies(), 2);
    EXPECT_FALSE(playlist());
    EXPECT_EQ(appState.loadingMessage(), "A guardar dados...") << "the last text stays";
    EXPECT_THAT(journal.starting("message A processar"), ElementsAre("message A processar 0 itens..."));
}

TEST_F(DataSyncServiceTest, TheErrorsSpeakToTheUser) {
    EXPECT_STREQ(SyncError(SyncError::Case::noConnection).what(), "Sem ligacao a internet");
    EXPECT_STREQ(SyncError(SyncError::Case::emptyResponse).what(),
                 "Servidor devolveu resposta vazia — catalogo anterior preservado");
}

TEST_F(DataSyncServiceTest, RowsThatAreAllDroppedLeaveTheOldOnesButCountNothing) {
    storeEarlierCatalogue();
    appState.setTotalMovies(2);
    provider.script("get_vod_streams", {body(R"([{"num":1},{"num":2}])")});
    sync();
    EXPECT_THAT(storedNames(), ElementsAre("Old A", "Old B"));
    ASSERT_TRUE(playlist());
    EXPECT_EQ(playlist()->channelCount, 0);
    EXPECT_EQ(appState.totalMovies(), 0);
    EXPECT_EQ(appState.loadingMessage(), "");
    EXPECT_THAT(journal.starting("message A processar"), ElementsAre("message A processar 2 itens..."));
}

TEST_F(DataSyncServiceTest, ACategoryIdThatStandsTwiceFailsTheRunBeforeAnythingIsTold) {
    storeEarlierCatalogue();
    for (const char* action : {"get_live_categories", "get_vod_categories", "get_series_categories"}) {
        scriptSmallCatalogue();
        provider.script(action, {body(categoriesJSON({{"1", "A"}, {"1", "B"}}))});
        EXPECT_THROW(sync(), DuplicateCategoryError) << action;
    }
    EXPECT_THAT(journal.lines, ElementsAre("message A carregar conteudo..."));
    EXPECT_FALSE(savedOrder(DataSyncService::liveOrderKey));
    EXPECT_THAT(storedNames(), ElementsAre("Old A", "Old B"));
    EXPECT_FALSE(playlist());
}

TEST_F(DataSyncServiceTest, TheNewFileOfAFailedRunIsNotClosedOnTheMainThread) {
    scriptSmallCatalogue();
    provider.script("get_live_categories", {body(categoriesJSON({{"1", "A"}, {"1", "B"}}))});
    const ClosedFiles closed;
    EXPECT_THROW(sync(), DuplicateCategoryError);
    EXPECT_EQ(closed.here(), 0);
    EXPECT_EQ(closed.elsewhere(), 1);
}

TEST_F(DataSyncServiceTest, ACategoryIdIsShownInPart) {
    const DuplicateCategoryError error("get_live_categories", std::string(100'000, 'i'));
    EXPECT_EQ(std::string(error.what()),
              "get_live_categories: the category id \"" + std::string(40, 'i') + "\"... stands twice");
}

TEST_F(DataSyncServiceTest, AStreamIdThatStandsTwiceKeepsTheLastRowWhileTheTotalsCountBoth) {
    scriptSmallCatalogue();
    provider.script("get_vod_streams",
                    {body(R"([{"stream_id":10,"name":"First"},{"stream_id":11,"name":"Other"},
                                                 {"stream_id":10,"name":"Last"}])")});
    sync();
    EXPECT_THAT(store->mainContext().distinct(&Channel::name, field(&Channel::type) == "movie"),
                ElementsAre("Last", "Other"));
    EXPECT_EQ(appState.totalMovies(), 3);
    EXPECT_EQ(playlist()->channelCount, 6);
}

TEST_F(DataSyncServiceTest, AMovieTakesTheIdOfALiveChannel) {
    scriptSmallCatalogue();
    provider.script("get_vod_streams", {body(listJSON(ListKind::Movies, {.first = 2, .name = "Movie"}))});
    sync();
    EXPECT_THAT(storedNames(), ElementsAre("Live 1", "Movie 2", "Series 20"));
    EXPECT_EQ(appState.totalLive(), 2);
}

TEST_F(DataSyncServiceTest, OfflineWithoutRowsRaises) {
    goOffline();
    EXPECT_EQ(syncErrorOfRun(), SyncError::Case::noConnection);
    EXPECT_THAT(journal.lines, IsEmpty());
    EXPECT_EQ(provider.requestCount("get_series"), 0);
}

TEST_F(DataSyncServiceTest, AsksForItsTextsByTheirKeys) {
    const MarkedTexts texts{"sync.loadingContent", "sync.saving",        "sync.error.generic",
                            "sync.moviesError",    "sync.seriesError",   "sync.offline",
                            "category.none",       "error.noConnection", "error.emptyResponse"};
    scriptSmallCatalogue();
    provider.script("get_live_categories", {failure()});
    provider.script("get_vod_streams", {body("[]")});
    provider.script("get_series", {body("[]")});
    sync();
    EXPECT_EQ(journal.lines.front(), "message <sync.loadingContent>");
    EXPECT_THAT(journal.starting("message <"),
                ElementsAre("message <sync.loadingContent>", "message <sync.saving>"));
    EXPECT_THAT(
        journal.starting("toast"),
        ElementsAre("toast <sync.error.generic>", "toast <sync.moviesError>", "toast <sync.seriesError>"));
    EXPECT_THAT(store->mainContext().distinct(&Channel::groupTitle), ElementsAre("<category.none>"));
    goOffline();
    sync();
    EXPECT_EQ(appState.toastMessage(), "<sync.offline>");
    EXPECT_STREQ(SyncError(SyncError::Case::noConnection).what(), "<error.noConnection>");
    EXPECT_STREQ(SyncError(SyncError::Case::emptyResponse).what(), "<error.emptyResponse>");
}

TEST_F(DataSyncServiceTest, OfflineWithRowsOnlySetsTheTotals) {
    storeEarlierCatalogue();
    appState.setLoadingMessage("before");
    journal.lines.clear();
    goOffline();
    sync();
    EXPECT_THAT(journal.lines,
                ElementsAre("totalMovies 2", "message ", "toast Sem internet — a usar dados em cache"));
    EXPECT_EQ(appState.toastType(), ToastType::warning);
    EXPECT_FALSE(playlist());
    EXPECT_FALSE(savedOrder(DataSyncService::liveOrderKey));
}

TEST_F(DataSyncServiceTest, OfflineRowsOfAnyTypeAreRows) {
    Channel channel;
    channel.id = "main_x";
    channel.type = "radio";
    store->mainContext().insert(channel);
    store->mainContext().save();
    appState.setTotalLive(9);
    goOffline();
    sync();
    EXPECT_EQ(appState.totalLive(), 0);
}

TEST_F(DataSyncServiceTest, TwoRunsAtOnceLeaveOneWholeCatalogue) {
    scriptSmallCatalogue();
    DataSyncService first(client(), environment());
    DataSyncService second(client(), environment());
    auto running = first.syncAll();
    resultOf(second.syncAll());
    resultOf(std::move(running));
    EXPECT_EQ(store->mainContext().count<Channel>(), 5);
    EXPECT_EQ(store->mainContext().count<Playlist>(), 1);
}

TEST_F(DataSyncServiceTest, NobodySeesAHalfWrittenCatalogueAndTheMainThreadGoesOn) {
    constexpr std::int64_t rows = 20'000;
    const auto script = [this](std::int64_t first) {
        scriptSmallCatalogue();
        provider.script("get_live_streams", {body("[]")});
        provider.script("get_series", {body("[]")});
        provider.script("get_vod_streams",
                        {body(listJSON(ListKind::Movies, {.first = first, .count = rows}))});
    };
    script(0);
    sync();
    std::atomic_bool ends = false;
    std::atomic<std::int64_t> looks = 0;
    std::atomic<std::int64_t> strangeLooks = 0;
    std::thread reader([&] {
        const auto context = store->makeContext();
        while (!ends) {
            const auto old = context->count<Channel>(field(&Channel::streamId) < rows);
            const auto all = context->count<Channel>();
            ++looks;
            strangeLooks += static_cast<int>(all != rows || (old != 0 && old != rows));
        }
    });
    // The processor time of this thread between two turns of its loop, which a busy machine does not stretch.
    double last = threadSeconds();
    double longestTurn = 0;
    QTimer pulse;
    QObject::connect(&pulse, &QTimer::timeout, &pulse, [&] {
        const double now = threadSeconds();
        longestTurn = std::max(longestTurn, now - last);
        last = now;
    });
    script(rows);
    last = threadSeconds();
    pulse.start(1);
    sync();
    ends = true;
    reader.join();
    EXPECT_GT(looks, 1);
    EXPECT_EQ(strangeLooks, 0);
    EXPECT_EQ(store->mainContext().count<Channel>(field(&Channel::streamId) >= rows), rows);
    EXPECT_GT(longestTurn, 0);
    EXPECT_LT(longestTurn, 0.016);
    RecordProperty("longestTurnSeconds", std::to_string(longestTurn));
}

} // namespace
} // namespace ondavia::testing
