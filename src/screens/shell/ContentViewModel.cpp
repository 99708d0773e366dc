#include "screens/shell/ContentViewModel.h"

#include "base/AppLogger.h"
#include "base/LocalizedText.h"
#include "base/Text.h"
#include "platform/UserDefaults.h"
#include "protocol/XtreamAPIClient.h"
#include "state/AppState.h"
#include "store/LibraryStore.h"

#include <QPointer>
#include <charconv>
#include <cmath>
#include <set>

namespace ondavia {
namespace {

/// The time of a synchronisation that never was: the first day of year 1.
constexpr Date distantPast{std::chrono::seconds(-62135769600)};

/// Unix seconds as decimal text; anything that is no number, and any date that no calendar holds, is
/// absent.
std::optional<Date> parseExpiry(const std::optional<std::string>& text) {
    double seconds = 0;
    std::string_view digits = text ? std::string_view(*text) : std::string_view();
    if (digits.starts_with('+') && !digits.starts_with("+-")) {
        digits.remove_prefix(1);
    }
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), seconds);
    constexpr double latest = 9e12;
    if (digits.empty() || error != std::errc() || end != digits.data() + digits.size() ||
        !(std::abs(seconds) < latest)) {
        return std::nullopt;
    }
    return Date(std::chrono::microseconds(std::llround(seconds * 1e6)));
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

ContentViewModel::ContentViewModel(SyncEnvironment environment, std::function<Date()> now)
    : m_environment(environment)
    , m_now(std::move(now)) {
    const AppState& state = environment.appState;
    connect(&state, &AppState::isLoadingChanged, this, &ContentViewModel::isLoadingChanged);
    connect(&state, &AppState::loadingMessageChanged, this, &ContentViewModel::loadingMessageChanged);
    connect(&state, &AppState::toastMessageChanged, this, &ContentViewModel::toastChanged);
    connect(&state, &AppState::toastTypeChanged, this, &ContentViewModel::toastChanged);
    connect(&state, &AppState::hasCredentialsChanged, this, &ContentViewModel::hasCredentialsChanged);
    connect(&state, &AppState::selectedTabChanged, this, &ContentViewModel::selectedTabChanged);
    connect(&state, &AppState::isPlayingChanged, this, &ContentViewModel::presentsPlayerChanged);
    connect(&state, &AppState::currentChannelChanged, this, &ContentViewModel::presentsPlayerChanged);
    // In the next turn: an item chosen over the mini player ends that first, and the old item must not
    // fill the screen, and play, for the blink of an eye.
    connect(&state, &AppState::showMiniPlayerChanged, this, &ContentViewModel::presentsPlayerChanged,
            Qt::QueuedConnection);
}

bool ContentViewModel::isLoading() const {
    return m_environment.appState.isLoading();
}

QString ContentViewModel::loadingMessage() const {
    return QString::fromStdString(m_environment.appState.loadingMessage());
}

QString ContentViewModel::toastMessage() const {
    return QString::fromStdString(m_environment.appState.toastMessage().value_or(std::string()));
}

int ContentViewModel::toastType() const {
    return static_cast<int>(m_environment.appState.toastType());
}

bool ContentViewModel::hasCredentials() const {
    return m_environment.appState.hasCredentials();
}

int ContentViewModel::selectedTab() const {
    return static_cast<int>(m_environment.appState.selectedTab());
}

void ContentViewModel::setSelectedTab(int tab) {
    if (tab >= 0 && tab < static_cast<int>(std::size(allAppTabs))) {
        m_environment.appState.setSelectedTab(static_cast<AppTab>(tab));
    }
}

bool ContentViewModel::presentsPlayer() const {
    return m_environment.appState.presentsPlayer();
}

void ContentViewModel::start() {
    if (hasCredentials()) {
        loadContent();
    }
}

void ContentViewModel::signedIn() {
    start();
}

void ContentViewModel::dismissToast() {
    m_environment.appState.setToastMessage(std::nullopt);
}

void ContentViewModel::playerDismissed() {
    m_environment.appState.playerDismissed();
}

QCoro::Task<void> ContentViewModel::loadContent() {
    const bool refreshIsDue = isRefreshDue();
    std::int64_t rows = 0;
    try {
        rows = m_environment.store.mainContext().count<Channel>();
    } catch (const StoreError& error) {
        AppLogger::general.error("catalogue: cannot be counted: %s", {error.what()});
    }
    if (rows == 0) {
        m_environment.appState.setIsLoading(true);
        m_environment.appState.setLoadingMessage(localizedText("content.loading", "A carregar conteudo..."));
        co_await performSync(true);
        co_return;
    }
    publishStoredTotals(m_environment);
    loadCategoriesFromCache();
    if (refreshIsDue) {
        // Runs on by itself: it reports what the user must know.
        m_environment.scheduler.onMainThread([self = QPointer(this)] {
            if (self) {
                self->backgroundSync();
            }
        });
    }
}

/// Only the live order is looked at, and only for being missing: an empty list is an order too.
bool ContentViewModel::isRefreshDue() const {
    const UserDefaults& defaults = m_environment.defaults;
    const double stored = defaults.doubleForKey(syncIntervalKey);
    const std::chrono::duration<double> interval(stored > 0 ? stored : defaultInterval);
    const Date lastSync = defaults.dateForKey(lastSyncKey).value_or(distantPast);
    return !defaults.stringArrayForKey(DataSyncService::liveOrderKey) || m_now() - lastSync > interval;
}

void ContentViewModel::loadCategoriesFromCache() {
    const auto ordered = [this](std::string_view type, const char* orderKey) {
        std::vector<std::string> titles;
        try {
            titles = m_environment.store.mainContext().distinct(&Channel::groupTitle,
                                                                field(&Channel::type) == type);
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

QCoro::Task<void> ContentViewModel::performSync(bool showLoading) {
    AppState& appState = m_environment.appState;
    const auto client = appState.makeXtreamClient();
    if (!client) {
        endLoading(showLoading);
        co_return;
    }
    try {
        const XtreamAuthResponse reply = co_await client->authenticate();
        if (!reply.userInfo || reply.userInfo->auth != 1) {
            appState.showToast(localizedText("content.expiredAccount", "Conta expirada ou invalida"),
                               ToastType::error);
            endLoading(showLoading);
            co_return;
        }
        appState.setExpirationDate(parseExpiry(reply.userInfo->expDate));
        const auto connections = parseDecimalInteger(reply.userInfo->maxConnections.value_or(std::string()));
        appState.setMaxConnections(connections.value_or(1));
        DataSyncService service(client, m_environment);
        const std::stop_token neverStopped;
        co_await service.syncAll(neverStopped);
        m_environment.defaults.setDate(lastSyncKey, m_now());
        endLoading(showLoading);
    } catch (const std::exception& error) {
        AppLogger::general.error("first load: %s", {error.what()});
        endLoading(showLoading);
        appState.showToast(
            localizedText("content.loadError", "Erro ao carregar conteúdo. Verifica a tua ligação."),
            ToastType::error);
    }
}

QCoro::Task<void> ContentViewModel::backgroundSync() {
    const auto client = m_environment.appState.makeXtreamClient();
    if (!client) {
        co_return;
    }
    try {
        co_await client->authenticate();
        DataSyncService service(client, m_environment);
        const std::stop_token neverStopped;
        co_await service.syncAll(neverStopped);
        m_environment.defaults.setDate(lastSyncKey, m_now());
    } catch (const std::exception& error) {
        // The cached catalogue stays; the next start tries again.
        AppLogger::general.error("background refresh: %s", {error.what()});
    }
}

void ContentViewModel::endLoading(bool showLoading) {
    if (showLoading) {
        m_environment.appState.setIsLoading(false);
    }
}

} // namespace ondavia
