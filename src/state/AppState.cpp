#include "state/AppState.h"

#include "playback/PlayerManager.h"
#include "protocol/XtreamAPIClient.h"
#include "state/KeychainService.h"

namespace ondavia {

AppState::AppState(KeychainService& keychain, PlayerManager& playerManager, URLSessionFactory makeSession)
    : m_keychain(keychain)
    , m_playerManager(playerManager)
    , m_makeSession(std::move(makeSession)) {
    m_keychain.migrateFromUserDefaultsIfNeeded();
    if (auto credentials = m_keychain.loadCredentials()) {
        setServer(std::move(credentials->server));
        setUsername(std::move(credentials->username));
        setPassword(std::move(credentials->password));
        setHasCredentials(true);
    }
}

void AppState::saveCredentials(const std::string& newServer, const std::string& newUsername,
                               const std::string& newPassword) {
    setServer(newServer);
    setUsername(newUsername);
    setPassword(newPassword);
    setHasCredentials(true);
    m_keychain.set(newServer, KeychainService::serverKey);
    m_keychain.set(newUsername, KeychainService::usernameKey);
    m_keychain.set(newPassword, KeychainService::passwordKey);
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
    m_keychain.remove(KeychainService::serverKey);
    m_keychain.remove(KeychainService::usernameKey);
    m_keychain.remove(KeychainService::passwordKey);
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
