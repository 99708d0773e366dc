#include "screens/shell/ContentViewModel.h"

#include "base/AppLogger.h"
#include "base/LocalizedText.h"
#include "base/Text.h"
#include "library/CatalogueSummary.h"
#include "library/RefreshSchedule.h"
#include "platform/Scheduler.h"
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

ContentViewModel::ContentViewModel(SyncEnvironment environment, GuideEnvironment guide,
                                   std::function<Date()> now)
    : m_environment(environment)
    , m_guide(std::move(guide))
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

QVariant ContentViewModel::toastMessage() const {
    const auto& message = m_environment.appState.toastMessage();
    return message ? QVariant(QString::fromStdString(*message)) : QVariant();
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
        runLater([this] { return backgroundSync(); });
    } else if (auto client = m_environment.appState.makeXtreamClient()) {
        runLater([this, client = std::move(client)] { return loadEPGIfNeeded(client); });
    }
}

/// Nobody waits for the task: it reports by itself what the user must know.
void ContentViewModel::runLater(std::function<QCoro::Task<void>()> task) {
    m_environment.scheduler.onMainThread([self = QPointer(this), task = std::move(task)] {
        if (self) {
            task();
        }
    });
}

/// Only the live order is looked at, and only for being missing: an empty list is an order too.
bool ContentViewModel::isRefreshDue() const {
    return !m_environment.defaults.stringArrayForKey(DataSyncService::liveOrderKey) ||
           catalogueSchedule.isDue(m_environment.defaults, m_now());
}

void ContentViewModel::loadCategoriesFromCache() {
    const auto ordered = [this](const std::string& type, const char* orderKey) {
        std::vector<std::string> titles;
        try {
            for (const auto& [title, rows] : m_environment.catalogue.groups(type)) {
                titles.push_back(title);
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
        m_environment.defaults.setDate(catalogueSchedule.lastKey, m_now());
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
        m_environment.defaults.setDate(catalogueSchedule.lastKey, m_now());
    } catch (const std::exception& error) {
        // The cached catalogue stays; the next start tries again.
        AppLogger::general.error("background refresh: %s", {error.what()});
    }
    co_await loadEPGIfNeeded(client);
}

QCoro::Task<void> ContentViewModel::loadEPGIfNeeded(std::shared_ptr<XtreamAPIClient> client) {
    if (!guideSchedule.isDue(m_environment.defaults, m_now())) {
        co_return;
    }
    try {
        EPGService service(m_guide);
        const std::string address = client->getEpgXMLURL();
        co_await service.loadEPG(address);
        m_environment.defaults.setDate(guideSchedule.lastKey, m_now());
    } catch (const std::exception& error) {
        // The guide of before stays; the next start tries again.
        AppLogger::general.error("guide: %s", {error.what()});
    }
}

void ContentViewModel::endLoading(bool showLoading) {
    if (showLoading) {
        m_environment.appState.setIsLoading(false);
    }
}

} // namespace ondavia
