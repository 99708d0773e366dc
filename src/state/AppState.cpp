#include "state/AppState.h"

#include "base/LocalizedText.h"
#include "playback/PlayerManager.h"
#include "protocol/XtreamAPIClient.h"
#include "state/KeychainQueue.h"

#include <QPointer>
#include <qcoro/qcorofuture.h>

namespace ondavia {

AppState::AppState(KeychainQueue& keychain, PlayerManager& playerManager, URLSessionFactory makeSession)
    : m_keychain(keychain)
    , m_playerManager(playerManager)
    , m_makeSession(std::move(makeSession)) {
    connect(&m_keychain, &KeychainQueue::gaveUp, this, [this] {
        showToast(localizedText("account.notRemembered",
                                "O porta-chaves não responde. Nada fica guardado para a próxima vez."),
                  ToastType::warning);
    });
    // It holds this object weakly.
    takeStoredAccount();
}

QCoro::Task<void> AppState::takeStoredAccount() {
    const QPointer self(this);
    setIsAwaitingAccount(true);
    const auto stored = m_keychain.run([](KeychainService& keychain) {
        keychain.migrateFromUserDefaultsIfNeeded();
        return keychain.loadCredentials();
    });
    const bool comesLater = !stored.isFinished();
    auto credentials = co_await stored;
    // Who signs in or out meanwhile wants no other account.
    if (!self || !isAwaitingAccount()) {
        co_return;
    }
    if (credentials) {
        takeAccount(std::move(*credentials));
    }
    setIsAwaitingAccount(false);
    if (credentials && comesLater) {
        Q_EMIT storedAccountCame();
    }
}

void AppState::takeAccount(Credentials credentials) {
    setServer(std::move(credentials.server));
    setUsername(std::move(credentials.username));
    setPassword(std::move(credentials.password));
    setHasCredentials(true);
}

void AppState::saveCredentials(const std::string& newServer, const std::string& newUsername,
                               const std::string& newPassword) {
    const Credentials credentials{newServer, newUsername, newPassword};
    const bool isKnown = hasCredentials() && credentials == Credentials{server(), username(), password()};
    takeAccount(credentials);
    setIsAwaitingAccount(false);
    if (!isKnown) {
        Q_EMIT accountChanged();
    }
    // The result is not looked at.
    m_keychain.run(
        [credentials](KeychainService& keychain) { return keychain.saveCredentials(credentials); });
}

void AppState::logout() {
    setServer({});
    setUsername({});
    setPassword({});
    setHasCredentials(false);
    setLiveCategories({});
    setVodCategories({});
    setSeriesCategories({});
    setTotalLive(0);
    setTotalMovies(0);
    setTotalSeries(0);
    clearPlaySession();
    setIsAwaitingAccount(false);
    Q_EMIT accountChanged();
    m_keychain.run([](KeychainService& keychain) { return keychain.removeCredentials(); });
}

std::shared_ptr<XtreamAPIClient> AppState::makeXtreamClient() const {
    if (server().empty() || username().empty() || password().empty()) {
        return nullptr;
    }
    return std::make_shared<XtreamAPIClient>(server(), username(), password(), m_makeSession);
}

void AppState::showToast(std::string message, ToastType type) {
    setToastMessage(std::move(message));
    setToastType(type);
}

void AppState::playChannel(Channel channel) {
    endMiniPlayerSession();
    // Two absent ids are equal: an item of an unknown series keeps the playlist that no series holds.
    const auto parentSeriesId = seriesParentChannel() ? seriesParentChannel()->seriesId : std::nullopt;
    const bool playlistSurvives = channel.type == "series" && channel.seriesId == parentSeriesId;
    if (!playlistSurvives) {
        setSeriesEpisodes({});
        setCurrentEpisodeIndex(0);
        setSeriesParentChannel(std::nullopt);
    }
    setCurrentChannel(std::move(channel));
    setIsPlaying(true);
}

void AppState::playSeriesEpisode(Channel channel, std::vector<XtreamEpisode> episodes,
                                 std::int64_t episodeIndex, Channel parentChannel) {
    endMiniPlayerSession();
    setSeriesEpisodes(std::move(episodes));
    setCurrentEpisodeIndex(episodeIndex);
    setSeriesParentChannel(std::move(parentChannel));
    setCurrentChannel(std::move(channel));
    setIsPlaying(true);
}

bool AppState::presentsPlayer() const {
    return isPlaying() && currentChannel() && !showMiniPlayer();
}

void AppState::playerDismissed() {
    if (showMiniPlayer()) {
        return;
    }
    setIsPlaying(false);
    setCurrentChannel(std::nullopt);
}

void AppState::endMiniPlayerSession() {
    if (!showMiniPlayer()) {
        return;
    }
    m_playerManager.stop();
    setShowMiniPlayer(false);
    m_playerManager.setIsMiniPlayer(false);
}

void AppState::clearPlaySession() {
    setCurrentChannel(std::nullopt);
    setIsPlaying(false);
    setShowMiniPlayer(false);
    setSeriesEpisodes({});
    setCurrentEpisodeIndex(0);
    setSeriesParentChannel(std::nullopt);
    setPendingSubtitleURLs({});
}

} // namespace ondavia
