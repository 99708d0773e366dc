#include "SyncFixture.h"

#include <QThreadPool>

namespace ondavia::testing {
namespace {

std::string named(const std::string& list, const std::vector<CategoryItem>& items) {
    std::string line = list;
    for (const CategoryItem& item : items) {
        line += " " + item.id + "=" + item.name;
    }
    return line;
}

} // namespace

StateJournal::StateJournal(const AppState& state) {
    const auto note = [this](auto signal, const AppState& source, auto text) {
        connect(&source, signal, this, [this, text] { lines.push_back(text()); });
    };
    note(&AppState::loadingMessageChanged, state, [&state] { return "message " + state.loadingMessage(); });
    note(&AppState::isLoadingChanged, state,
         [&state] { return std::string(state.isLoading() ? "loading" : "not loading"); });
    note(&AppState::toastMessageChanged, state,
         [&state] { return "toast " + state.toastMessage().value_or("(none)"); });
    note(&AppState::liveCategoriesChanged, state, [&state] { return named("live", state.liveCategories()); });
    note(&AppState::vodCategoriesChanged, state, [&state] { return named("vod", state.vodCategories()); });
    note(&AppState::seriesCategoriesChanged, state,
         [&state] { return named("series", state.seriesCategories()); });
    note(&AppState::totalLiveChanged, state,
         [&state] { return "totalLive " + std::to_string(state.totalLive()); });
    note(&AppState::totalMoviesChanged, state,
         [&state] { return "totalMovies " + std::to_string(state.totalMovies()); });
    note(&AppState::totalSeriesChanged, state,
         [&state] { return "totalSeries " + std::to_string(state.totalSeries()); });
}

std::vector<std::string> StateJournal::starting(const std::string& prefix) const {
    std::vector<std::string> found;
    std::ranges::copy_if(lines, std::back_inserter(found),
                         [&prefix](const auto& line) { return line.starts_with(prefix); });
    return found;
}

void SyncFixture::TearDown() {
    provider.stop();
    // Each turn lets a run go one step further. A step may begin and end within a turn and leave its result
    // for the next one, so that one turn without work says little.
    constexpr int quietTurns = 10;
    auto* pool = QThreadPool::globalInstance();
    for (int quiet = 0; quiet < quietTurns; ++quiet) {
        waitForTransfers(std::chrono::seconds(10));
        pool->waitForDone();
        drainEvents();
        if (pool->activeThreadCount() > 0 || scheduler.activeSleeps() > 0 ||
            !waitForTransfers(std::chrono::milliseconds(0))) {
            quiet = 0;
        }
    }
}

SyncFixture::SyncFixture(const StoreOptions& options)
    : playerManager(PlayerEnvironment{[this](const std::string& content, const FSOptions& engineOptions) {
                                          return std::make_shared<FakePlayer>(content, engineOptions,
                                                                              engineJournal, notifications);
                                      },
                                      notifications,
                                      scheduler,
                                      audio,
                                      {},
                                      nowPlaying,
                                      commands})
    , store(LibraryStore::open(folder.path() / "store", options))
    , catalogue(std::make_unique<CatalogueSummary>(*store)) {
    auto monitor = std::make_unique<ScriptedPath>();
    path = monitor.get();
    network = std::make_unique<NetworkMonitor>(std::move(monitor));
    appState.saveCredentials(provider.url(), "ana", "word");
    QObject::connect(&leapingClock, &QTimer::timeout, &leapingClock, [this] {
        if (scheduler.activeSleeps() > 0) {
            scheduler.advance(1);
        }
    });
    leapingClock.start(1);
}

void SyncFixture::goOffline() {
    path->report({.satisfied = false});
    drainEvents();
}

void SyncFixture::scriptSmallCatalogue() {
    provider.script("get_live_categories", {body(categoriesJSON({{"1", "News"}, {"2", "Sport"}}))});
    provider.script("get_vod_categories", {body(categoriesJSON({{"1", "Drama"}}))});
    provider.script("get_series_categories", {body(categoriesJSON({{"1", "Long"}}))});
    provider.script("get_live_streams", {body(listJSON(ListKind::Live, {.count = 2, .name = "Live"}))});
    provider.script("get_vod_streams",
                    {body(listJSON(ListKind::Movies, {.first = 10, .count = 2, .name = "Movie"}))});
    provider.script("get_series", {body(listJSON(ListKind::Series, {.first = 20, .name = "Series"}))});
}

std::shared_ptr<XtreamAPIClient> SyncFixture::client() const {
    return appState.makeXtreamClient();
}

void SyncFixture::sync(std::stop_token stop) {
    DataSyncService service(client(), environment());
    resultOf(service.syncAll(std::move(stop)));
}

void SyncFixture::storeEarlierCatalogue() {
    for (const char* name : {"Old A", "Old B"}) {
        Channel channel;
        channel.id = std::string("main_") + name;
        channel.name = name;
        channel.type = "movie";
        channel.groupTitle = "Old";
        store->mainContext().insert(channel);
    }
    store->mainContext().save();
}

std::vector<std::string> SyncFixture::storedNames() const {
    return store->mainContext().distinct(&Channel::name);
}

std::optional<Playlist> SyncFixture::playlist() const {
    return store->mainContext().fetchFirst<Playlist>();
}

SyncEnvironment SyncFixture::environment() {
    return {.store = *store,
            .catalogue = *catalogue,
            .appState = appState,
            .defaults = defaults,
            .network = *network,
            .scheduler = scheduler};
}

} // namespace ondavia::testing
