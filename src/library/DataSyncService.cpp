#include "library/DataSyncService.h"

#include "library/CatalogueIntake.h"
#include "library/CatalogueSummary.h"
#include "library/FetchWithRetry.h"
#include "library/NetworkMonitor.h"
#include "library/SyncError.h"
#include "platform/PoolWork.h"
#include "platform/UserDefaults.h"
#include "store/LibraryStore.h"

#include <qcoro/qcorofuture.h>

namespace ondavia {
namespace {

constexpr int retries = 3;

using CategoryList = std::vector<XtreamCategory>;

std::vector<CategoryItem> categoryItems(const CategoryList& categories) {
    std::vector<CategoryItem> items;
    for (const auto& category : categories) {
        items.push_back({category.categoryId, category.categoryName, 0});
    }
    return items;
}

std::vector<std::string> categoryNames(const CategoryList& categories) {
    std::vector<std::string> names;
    for (const auto& category : categories) {
        names.push_back(category.categoryName);
    }
    return names;
}

CategoryMap categoryMap(const CategoryList& categories) {
    CategoryMap map;
    for (const auto& category : categories) {
        map.emplace(category.categoryId, category.categoryName);
    }
    return map;
}

void requireUniqueIds(const char* action, const CategoryList& categories) {
    CategoryMap seen;
    for (const auto& category : categories) {
        if (!seen.emplace(category.categoryId, category.categoryName).second) {
            throw DuplicateCategoryError(action, category.categoryId);
        }
    }
}

} // namespace

/// What one run gathers. Coroutines hold it; transfers and pool work only refer to it, since a coroutine
/// waits for each of them.
struct DataSyncService::Run final {
    Run(const std::shared_ptr<XtreamAPIClient>& client, const std::shared_ptr<Replacement<Channel>>& rows,
        RunStops runStops)
        : catalogue(rows)
        , stops(std::move(runStops))
        , live(client, rows, failure, CatalogueSection::Live, &XtreamAPIClient::normalizeLiveStreams,
               stops.account)
        , movies(client, rows, failure, CatalogueSection::Movies, &XtreamAPIClient::normalizeVodStreams,
                 stops.account)
        , series(client, rows, failure, CatalogueSection::Series, &XtreamAPIClient::normalizeSeriesList,
                 stops.account) {}

    [[nodiscard]] std::int64_t rawCount() const { return rawLive + rawMovies + rawSeries; }

    std::shared_ptr<Replacement<Channel>> catalogue;
    RunStops stops;
    FirstFailure failure;
    SectionIntake<XtreamLiveStream> live;
    SectionIntake<XtreamVodStream> movies;
    SectionIntake<XtreamSeriesItem> series;
    CategoryList liveCategories;
    CategoryList vodCategories;
    CategoryList seriesCategories;
    std::int64_t rawLive = 0;
    std::int64_t rawMovies = 0;
    std::int64_t rawSeries = 0;
};

namespace {

/// One of the three category lists. Its section may go on as soon as it is here, or has failed for good.
template<class Run, class Row>
QCoro::Task<CategoryList> fetchCategories(std::shared_ptr<XtreamAPIClient> client, std::string action,
                                          std::shared_ptr<Run> run, SectionIntake<Row>& section,
                                          AppState& appState, Scheduler& scheduler) {
    const std::function attempt = [client, action] { return client->getCategories(action); };
    const auto fetched = co_await fetchWithRetry(attempt, retries, appState, scheduler, run->stops);
    CategoryList categories = fetched.value_or(CategoryList());
    section.setCategories(categoryMap(categories));
    co_return categories;
}

/// One of the three stream lists, row by row into its section. The result is the number of raw rows.
template<class Run, class Row>
QCoro::Task<std::int64_t> fetchStreams(std::shared_ptr<XtreamAPIClient> client, std::shared_ptr<Run> run,
                                       SectionIntake<Row>& section, AppState& appState,
                                       Scheduler& scheduler) {
    auto* intake = &section;
    const auto restart = [intake] { intake->restart(); };
    const std::function attempt = [client, intake, restart]() -> QCoro::Task<std::int64_t> {
        const auto restarted = runOnPool(restart);
        co_await restarted;
        const std::function<void(std::vector<Row> &&)> take = [intake](std::vector<Row>&& rows) {
            intake->take(std::move(rows));
        };
        co_return co_await client->template fetchRows<Row>(take);
    };
    const auto rows = co_await fetchWithRetry(attempt, retries, appState, scheduler, run->stops);
    if (!rows) {
        const auto restarted = runOnPool(restart);
        co_await restarted;
    }
    co_return rows.value_or(0);
}

} // namespace

DataSyncService::DataSyncService(std::shared_ptr<XtreamAPIClient> client, SyncEnvironment environment)
    : m_client(std::move(client))
    , m_environment(environment) {}

QCoro::Task<void> DataSyncService::syncAll(std::stop_token stop) {
    requireAccount();
    AppState& appState = m_environment.appState;
    if (!m_environment.network.isConnected()) {
        useCachedCatalogue();
        co_return;
    }
    appState.setLoadingMessage(localizedText("sync.loadingContent", "A carregar conteudo..."));
    const std::shared_ptr<Run> run = co_await beginRun(std::move(stop));
    std::exception_ptr failure;
    try {
        co_await carryOut(run);
    } catch (...) {
        // Raised again below.
        failure = std::current_exception();
    }
    const auto closed = runOnPool([rows = run->catalogue] { rows->close(); });
    co_await closed;
    if (failure) {
        std::rethrow_exception(failure);
    }
}

QCoro::Task<std::shared_ptr<DataSyncService::Run>> DataSyncService::beginRun(std::stop_token stop) {
    const RunStops stops{std::move(stop), m_environment.account};
    const auto begun = runOnPool([client = m_client, store = &m_environment.store, stops] {
        const auto rows =
            std::make_shared<Replacement<Channel>>(store->beginReplacement<Channel>(client->accountMark()));
        return std::make_shared<Run>(client, rows, stops);
    });
    co_return co_await begun;
}

QCoro::Task<void> DataSyncService::carryOut(std::shared_ptr<Run> run) {
    AppState& appState = m_environment.appState;
    requireAccount();
    co_await download(run);
    requireAccount();
    requireUniqueIds("get_live_categories", run->liveCategories);
    requireUniqueIds("get_vod_categories", run->vodCategories);
    requireUniqueIds("get_series_categories", run->seriesCategories);
    publishCategories(*run);
    warnAboutEmptyLists(*run);
    appState.setLoadingMessage("A processar " + std::to_string(run->rawCount()) + " itens...");
    const auto normalized = runOnPool([run] {
        run->live.finish();
        run->movies.finish();
        run->series.finish();
    });
    co_await normalized;
    requireAccount();
    appState.setLoadingMessage(localizedText("sync.saving", "A guardar dados..."));
    if (run->rawCount() == 0) {
        throw SyncError(SyncError::Case::emptyResponse);
    }
    const std::int64_t count = co_await writeCatalogue(run);
    co_await updatePlaylist(count);
    m_environment.store.requireOwner(m_client->accountMark());
    appState.setTotalLive(run->live.normalizedCount());
    appState.setTotalMovies(run->movies.normalizedCount());
    appState.setTotalSeries(run->series.normalizedCount());
    appState.setLoadingMessage({});
}

/// Nothing is shown or kept for an account that this process or another one has left.
void DataSyncService::requireAccount() const {
    requireWanted(m_environment.account);
    m_environment.store.requireOwner(m_client->accountMark());
}

bool publishStoredTotals(const SyncEnvironment& environment) {
    AppState& appState = environment.appState;
    CatalogueSummary& catalogue = environment.catalogue;
    try {
        if (environment.store.mainContext().count<Channel>() == 0) {
            return false;
        }
        appState.setTotalLive(catalogue.count("live"));
        appState.setTotalMovies(catalogue.count("movie"));
        appState.setTotalSeries(catalogue.count("series"));
        return true;
    } catch (const StoreError& error) {
        AppLogger::general.error("catalogue: cannot be counted: %s", {error.what()});
        return false;
    }
}

/// Without a network path the rows that are there must do; without rows there is nothing to show.
void DataSyncService::useCachedCatalogue() {
    AppState& appState = m_environment.appState;
    if (!publishStoredTotals(m_environment)) {
        throw SyncError(SyncError::Case::noConnection);
    }
    appState.setLoadingMessage({});
    appState.showToast(localizedText("sync.offline", "Sem internet — a usar dados em cache"),
                       ToastType::warning);
}

/// Starts the six downloads at once and waits for all of them.
QCoro::Task<void> DataSyncService::download(std::shared_ptr<Run> run) {
    AppState& appState = m_environment.appState;
    Scheduler& scheduler = m_environment.scheduler;
    auto liveCategories =
        fetchCategories(m_client, "get_live_categories", run, run->live, appState, scheduler);
    auto vodCategories =
        fetchCategories(m_client, "get_vod_categories", run, run->movies, appState, scheduler);
    auto seriesCategories =
        fetchCategories(m_client, "get_series_categories", run, run->series, appState, scheduler);
    auto live = fetchStreams(m_client, run, run->live, appState, scheduler);
    auto movies = fetchStreams(m_client, run, run->movies, appState, scheduler);
    auto series = fetchStreams(m_client, run, run->series, appState, scheduler);
    run->liveCategories = co_await liveCategories;
    run->vodCategories = co_await vodCategories;
    run->seriesCategories = co_await seriesCategories;
    run->rawLive = co_await live;
    run->rawMovies = co_await movies;
    run->rawSeries = co_await series;
}

/// Runs on an empty reply too: what the server says of its categories replaces what was known.
void DataSyncService::publishCategories(const Run& run) {
    AppState& appState = m_environment.appState;
    appState.setLiveCategories(categoryItems(run.liveCategories));
    appState.setVodCategories(categoryItems(run.vodCategories));
    appState.setSeriesCategories(categoryItems(run.seriesCategories));
    UserDefaults& defaults = m_environment.defaults;
    defaults.setStringArray(liveOrderKey, categoryNames(run.liveCategories));
    defaults.setStringArray(vodOrderKey, categoryNames(run.vodCategories));
    defaults.setStringArray(seriesOrderKey, categoryNames(run.seriesCategories));
}

void DataSyncService::warnAboutEmptyLists(const Run& run) {
    AppState& appState = m_environment.appState;
    if (run.rawMovies == 0) {
        appState.showToast(localizedText("sync.moviesError", "Nao foi possivel carregar filmes"),
                           ToastType::warning);
    }
    if (run.rawSeries == 0) {
        appState.showToast(localizedText("sync.seriesError", "Nao foi possivel carregar series"),
                           ToastType::warning);
    }
}

/// Puts the new rows in the place of the old ones, in one step. Lists whose every row was dropped leave
/// the old rows alone.
QCoro::Task<std::int64_t> DataSyncService::writeCatalogue(std::shared_ptr<Run> run) {
    run->failure.rethrow();
    const std::int64_t count =
        run->live.normalizedCount() + run->movies.normalizedCount() + run->series.normalizedCount();
    if (count >= 1) {
        const auto committed = runOnPool([run] {
            requireWanted(run->stops.account);
            run->catalogue->commit();
        });
        co_await committed;
    }
    co_return count;
}

QCoro::Task<void> DataSyncService::updatePlaylist(std::int64_t channelCount) {
    const auto saved =
        runOnPool([store = &m_environment.store, owner = m_client->accountMark(), channelCount] {
            const auto context = store->makeContext();
            const Date now = currentDate();
            Playlist playlist{"main", "Principal", "xtream", true, "main", channelCount, now, now};
            if (auto known = context->fetchFirst<Playlist>({.where = field(&Playlist::id) == "main"})) {
                playlist = std::move(*known);
                playlist.channelCount = channelCount;
                playlist.lastUpdatedAt = now;
            }
            context->insert(playlist);
            context->saveFor(owner);
        });
    co_await saved;
}

} // namespace ondavia
