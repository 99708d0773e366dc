#include "library/LibraryRefresh.h"

#include "base/AppLogger.h"
#include "base/LocalizedText.h"
#include "base/Text.h"
#include "library/CatalogueSummary.h"
#include "library/RefreshSchedule.h"
#include "library/RunStops.h"
#include "platform/Scheduler.h"
#include "platform/UserDefaults.h"
#include "protocol/AccountExpiry.h"
#include "protocol/XtreamAPIClient.h"
#include "state/AppState.h"
#include "store/LibraryStore.h"

#include <QPointer>
#include <algorithm>
#include <set>
#include <type_traits>

namespace ondavia {
namespace {

/// Whose rows the library may hold while the state is as it is.
std::string ownerFor(const AppState& appState) {
    const auto client = appState.makeXtreamClient();
    return client ? client->accountMark() : std::string(LibraryStore::nobody);
}

} // namespace

std::vector<CategoryItem> orderedCategories(const std::vector<std::string>& groupTitles,
                                            const std::optional<std::vector<std::string>>& savedOrder) {
    const std::set<std::string> known(groupTitles.begin(), groupTitles.end());
    std::vector<CategoryItem> items;
    for (const auto& name : savedOrder ? *savedOrder : std::vector(known.begin(), known.end())) {
        if (known.contains(name)) {
            items.push_back({name, name, 0});
        }
    }
    return items;
}

LibraryRefresh::LibraryRefresh(SyncEnvironment environment, GuideEnvironment guide, std::function<Date()> now)
    : m_environment(std::move(environment))
    , m_guide(std::move(guide))
    , m_now(std::move(now)) {
    forgetDamagedGuide();
    const AppState& state = m_environment.appState;
    connect(&state, &AppState::accountChanged, this, &LibraryRefresh::changeAccount);
    connect(&state, &AppState::storedAccountCame, this, &LibraryRefresh::claimLibrary);
    if (state.hasCredentials()) {
        claimLibrary();
    }
}

/// What starts empty is due, whenever it was last loaded. (An empty catalogue is loaded in any case.)
void LibraryRefresh::forgetDamagedGuide() {
    if (std::ranges::count(m_environment.store.openReport().rebuiltFiles, StoreFile::Guide) > 0) {
        m_environment.defaults.removeObjectForKey(guideSchedule.lastKey);
    }
}

LibraryRefresh::~LibraryRefresh() {
    end();
}

/// For an account that was stored: unless another process has signed in or out since this one looked.
void LibraryRefresh::claimLibrary() {
    AppState& appState = m_environment.appState;
    if (wasSignedOutElsewhere()) {
        // Or by this one, and the keyring gave no answer then.
        appState.logout();
        return;
    }
    try {
        m_environment.store.claim(ownerFor(appState));
    } catch (const StoreError& error) {
        AppLogger::general.error("library: %s", {error.what()});
    }
}

void LibraryRefresh::abandonRuns() {
    m_account.request_stop();
    m_account = std::stop_source();
    if (m_showsOverlay) {
        lowerOverlay();
    }
}

void LibraryRefresh::leaveLoading() {
    if (m_showsOverlay) {
        abandonRuns();
    }
}

void LibraryRefresh::changeAccount() {
    abandonRuns();
    try {
        LibraryStore& store = m_environment.store;
        const std::string owner = ownerFor(m_environment.appState);
        const std::string before = store.owner().value_or(owner);
        store.setOwner(owner);
        if (owner != LibraryStore::nobody && owner != before) {
            // Every address of the catalogue holds the password of the account of before.
            store.mainContext().removeAll<Channel>();
            store.mainContext().save();
        }
    } catch (const StoreError& error) {
        AppLogger::general.error("library: %s", {error.what()});
    }
}

void LibraryRefresh::signOut() {
    LibraryStore& store = m_environment.store;
    StoreContext& rows = store.mainContext();
    std::exception_ptr failure;
    // What fails is raised below: it must keep neither the password nor what comes after it.
    const auto attempt = [&failure](const auto& step) {
        try {
            step();
        } catch (const StoreError&) {
            failure = failure ? failure : std::current_exception();
        }
    };
    const auto deleteAll = [&]<Entity T>(std::type_identity<T>) {
        attempt([&rows] {
            rows.removeAll<T>();
            rows.save();
        });
    };
    // First: what was on its way to the store finds it closed.
    attempt([&store] { store.setOwner(LibraryStore::nobody); });
    deleteAll(std::type_identity<Channel>());
    deleteAll(std::type_identity<Playlist>());
    deleteAll(std::type_identity<Favorite>());
    deleteAll(std::type_identity<WatchHistory>());
    deleteAll(std::type_identity<EPGProgram>());
    m_environment.appState.logout();
    if (failure) {
        std::rethrow_exception(failure);
    }
}

void LibraryRefresh::end() {
    m_account.request_stop();
}

QCoro::Task<void> LibraryRefresh::loadContent() {
    const bool refreshIsDue = isRefreshDue();
    std::int64_t rows = 0;
    try {
        rows = m_environment.store.mainContext().count<Channel>();
    } catch (const StoreError& error) {
        AppLogger::general.error("catalogue: cannot be counted: %s", {error.what()});
    }
    if (rows == 0) {
        m_showsOverlay = true;
        m_environment.appState.setIsLoading(true);
        m_environment.appState.setLoadingMessage(localizedText("content.loading", "A carregar conteudo..."));
        co_await performSync(true);
        co_return;
    }
    publishStoredTotals(m_environment);
    loadCategoriesFromCache();
    if (refreshIsDue) {
        runLater([this] { return backgroundSync(); });
    } else if (auto client = m_environment.appState.makeXtreamClient()) {
        runLater([this, client = std::move(client)] { return loadEPGIfNeeded(client); });
    }
}

/// Nobody waits for the task: it reports by itself what the user must know.
void LibraryRefresh::runLater(std::function<QCoro::Task<void>()> task) {
    m_environment.scheduler.onMainThread(
        [self = QPointer(this), account = m_account.get_token(), task = std::move(task)] {
            if (self && !account.stop_requested()) {
                task();
            }
        });
}

/// Only the live order is looked at, and only for being missing: an empty list is an order too.
bool LibraryRefresh::isRefreshDue() const {
    return !m_environment.defaults.stringArrayForKey(DataSyncService::liveOrderKey) ||
           catalogueSchedule.isDue(m_environment.defaults, m_now());
}

void LibraryRefresh::loadCategoriesFromCache() {
    const auto ordered = [this](const std::string& type, const char* orderKey) {
        std::vector<std::string> titles;
        try {
            for (const KeyGroup& group : m_environment.catalogue.groups(type)) {
                titles.push_back(group.value);
            }
        } catch (const StoreError& error) {
            AppLogger::general.error("catalogue: categories cannot be read: %s", {error.what()});
        }
        return orderedCategories(titles, m_environment.defaults.stringArrayForKey(orderKey));
    };
    AppState& appState = m_environment.appState;
    appState.setLiveCategories(ordered("live", DataSyncService::liveOrderKey));
    appState.setVodCategories(ordered("movie", DataSyncService::vodOrderKey));
    appState.setSeriesCategories(ordered("series", DataSyncService::seriesOrderKey));
}

bool LibraryRefresh::takeAccount(const XtreamAuthResponse& reply) {
    AppState& appState = m_environment.appState;
    if (!reply.userInfo || reply.userInfo->auth != 1) {
        appState.showToast(localizedText("content.expiredAccount", "Conta expirada ou invalida"),
                           ToastType::error);
        return false;
    }
    appState.setExpirationDate(expiryOf(*reply.userInfo));
    const auto connections = parseDecimalInteger(reply.userInfo->maxConnections.value_or(std::string()));
    appState.setMaxConnections(connections.value_or(1));
    return true;
}

QCoro::Task<void> LibraryRefresh::performSync(bool showLoading) {
    const QPointer self(this);
    const std::stop_token account = m_account.get_token();
    const auto endLoading = [this, showLoading] {
        if (showLoading) {
            lowerOverlay();
        }
    };
    const auto client = m_environment.appState.makeXtreamClient();
    if (!client) {
        endLoading();
        co_return;
    }
    try {
        const XtreamAuthResponse reply = co_await client->authenticate();
        if (!self || account.stop_requested()) {
            co_return;
        }
        if (takeAccount(reply)) {
            co_await synchronise(client);
        }
        if (self && !account.stop_requested()) {
            endLoading();
        }
    } catch (const std::exception& error) {
        if (!self || account.stop_requested()) {
            co_return;
        }
        AppLogger::general.error("first load: %s", {error.what()});
        endLoading();
        if (wasSignedOutElsewhere()) {
            m_environment.appState.logout();
            co_return;
        }
        m_environment.appState.showToast(
            localizedText("content.loadError", "Erro ao carregar conteúdo. Verifica a tua ligação."),
            ToastType::error);
    }
}

/// By another process, which left the library to nobody.
bool LibraryRefresh::wasSignedOutElsewhere() const {
    try {
        return m_environment.store.owner() == LibraryStore::nobody;
    } catch (const StoreError&) {
        return false;
    }
}

QCoro::Task<void> LibraryRefresh::backgroundSync() {
    const QPointer self(this);
    const std::stop_token account = m_account.get_token();
    const auto client = m_environment.appState.makeXtreamClient();
    if (!client) {
        co_return;
    }
    try {
        co_await client->authenticate();
        if (!self || account.stop_requested()) {
            co_return;
        }
        co_await synchronise(client);
    } catch (const std::exception& error) {
        // The cached catalogue stays; the next start tries again.
        AppLogger::general.error("background refresh: %s", {error.what()});
        if (self && !account.stop_requested() && wasSignedOutElsewhere()) {
            m_environment.appState.logout();
            co_return;
        }
    }
    if (self && !account.stop_requested()) {
        co_await loadEPGIfNeeded(client);
    }
}

QCoro::Task<void> LibraryRefresh::loadEPGIfNeeded(std::shared_ptr<XtreamAPIClient> client) {
    if (!guideSchedule.isDue(m_environment.defaults, m_now())) {
        co_return;
    }
    try {
        co_await loadGuide(client);
    } catch (const std::exception& error) {
        // The guide of before stays; the next start tries again.
        AppLogger::general.error("guide: %s", {error.what()});
    }
}

QCoro::Task<void> LibraryRefresh::synchronise(std::shared_ptr<XtreamAPIClient> client) {
    const QPointer self(this);
    SyncEnvironment environment = m_environment;
    environment.account = m_account.get_token();
    DataSyncService service(client, environment);
    const std::string owner = client->accountMark();
    co_await service.syncAll(environment.account);
    if (self) {
        m_environment.store.requireOwner(owner);
        m_environment.defaults.setDate(catalogueSchedule.lastKey, m_now());
    }
}

QCoro::Task<void> LibraryRefresh::loadGuide(std::shared_ptr<XtreamAPIClient> client) {
    const QPointer self(this);
    GuideEnvironment environment = m_guide;
    environment.owner = client->accountMark();
    environment.account = m_account.get_token();
    EPGService service(environment);
    const std::string address = client->getEpgXMLURL();
    co_await service.loadEPG(address);
    requireWanted(environment.account);
    if (self) {
        m_environment.defaults.setDate(guideSchedule.lastKey, m_now());
    }
}

void LibraryRefresh::lowerOverlay() {
    m_showsOverlay = false;
    m_environment.appState.setIsLoading(false);
}

} // namespace ondavia
