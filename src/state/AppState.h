#pragma once

#include "base/Date.h"
#include "base/Observable.h"
#include "entities/Channel.h"
#include "platform/URLSession.h"
#include "protocol/wire/SeriesRecords.h"

#include <QObject>
#include <qcoro/qcorotask.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ondavia {

class KeychainQueue;
struct Credentials;
class PlayerManager;
class XtreamAPIClient;

enum class AppTab { home = 0, live = 1, movies = 2, series = 3, favorites = 4 };
/// The tabs in their order on screen.
inline constexpr AppTab allAppTabs[] = {AppTab::home, AppTab::live, AppTab::movies, AppTab::series,
                                        AppTab::favorites};

enum class ToastType { info, success, warning, error };

/// One row of a browser's category list.
struct CategoryItem final {
    /// The provider's id after a synchronisation; the name itself when rebuilt from the store.
    std::string id;
    /// Equals `Channel::groupTitle` of its items.
    std::string name;
    /// Always 0 here: the browsers count for themselves.
    std::int64_t channelCount = 0;

    bool operator==(const CategoryItem&) const = default;
};

/// The one observable object of the application: the account, what log-in and synchronisation learnt,
/// what the screens share, and what is playing now. It owns no network and no store work.
///
/// Every field is observable on its own. Main thread only; asynchronous work comes back to it before it
/// writes. Lives as long as the process.
class AppState final : public QObject {
    Q_OBJECT

    /// The account is there and the interface works against it.
    ONDAVIA_OBSERVABLE(bool, hasCredentials, setHasCredentials, false);
    /// The full-screen loading overlay is up.
    ONDAVIA_OBSERVABLE(bool, isLoading, setIsLoading, false);
    /// Text of the overlay, and the progress of a synchronisation.
    ONDAVIA_OBSERVABLE(std::string, loadingMessage, setLoadingMessage);
    /// As the user gave it, not normalised.
    ONDAVIA_OBSERVABLE(std::string, server, setServer);
    ONDAVIA_OBSERVABLE(std::string, username, setUsername);
    ONDAVIA_OBSERVABLE(std::string, password, setPassword);
    ONDAVIA_OBSERVABLE(std::optional<Date>, expirationDate, setExpirationDate);
    ONDAVIA_OBSERVABLE(std::int64_t, maxConnections, setMaxConnections, 1);
    /// Nothing writes it yet, so it stays 0.
    ONDAVIA_OBSERVABLE(std::int64_t, activeConnections, setActiveConnections, 0);
    ONDAVIA_OBSERVABLE(std::vector<CategoryItem>, liveCategories, setLiveCategories);
    ONDAVIA_OBSERVABLE(std::vector<CategoryItem>, vodCategories, setVodCategories);
    ONDAVIA_OBSERVABLE(std::vector<CategoryItem>, seriesCategories, setSeriesCategories);
    ONDAVIA_OBSERVABLE(std::int64_t, totalLive, setTotalLive, 0);
    ONDAVIA_OBSERVABLE(std::int64_t, totalMovies, setTotalMovies, 0);
    ONDAVIA_OBSERVABLE(std::int64_t, totalSeries, setTotalSeries, 0);
    ONDAVIA_OBSERVABLE(AppTab, selectedTab, setSelectedTab, AppTab::home);
    /// Absent means no toast. The last writer wins; who shows it takes it away after 6.0 seconds.
    ONDAVIA_OBSERVABLE(std::optional<std::string>, toastMessage, setToastMessage);
    ONDAVIA_OBSERVABLE(ToastType, toastType, setToastType, ToastType::info);

    // What is playing now.

    /// A player session is open.
    ONDAVIA_OBSERVABLE(bool, isPlaying, setIsPlaying, false);
    /// The item of the open session.
    ONDAVIA_OBSERVABLE(std::optional<Channel>, currentChannel, setCurrentChannel);
    /// The session is shrunk into the floating mini player.
    ONDAVIA_OBSERVABLE(bool, showMiniPlayer, setShowMiniPlayer, false);
    /// External subtitle files to hand to the next movie.
    ONDAVIA_OBSERVABLE(std::vector<std::string>, pendingSubtitleURLs, setPendingSubtitleURLs);
    /// The ordered episodes of the running series playlist.
    ONDAVIA_OBSERVABLE(std::vector<XtreamEpisode>, seriesEpisodes, setSeriesEpisodes);
    ONDAVIA_OBSERVABLE(std::int64_t, currentEpisodeIndex, setCurrentEpisodeIndex, 0);
    /// The series that the playlist belongs to.
    ONDAVIA_OBSERVABLE(std::optional<Channel>, seriesParentChannel, setSeriesParentChannel);

    /// The secure store has not told yet whether it holds an account.
    ONDAVIA_OBSERVABLE(bool, isAwaitingAccount, setIsAwaitingAccount, false);

public:
    /// Has an account moved out of the settings store, then the stored one loaded, if any. It is there when
    /// the object is made, or comes when the store answers; until then the state is empty. All three must
    /// outlive the object.
    AppState(KeychainQueue& keychain, PlayerManager& playerManager, URLSessionFactory makeSession);

    /// Takes the account as it is: nothing is checked, nobody is asked, no load starts. The state holds at
    /// once, even if the secure store refuses it.
    void saveCredentials(const std::string& newServer, const std::string& newUsername,
                         const std::string& newPassword);
    /// Forgets account, catalogue view and play session. Rows of the store, settings and a running player
    /// are left to the caller.
    void logout();
    /// A new client for the account, or absent while any part of it is empty.
    [[nodiscard]] std::shared_ptr<XtreamAPIClient> makeXtreamClient() const;

    /// Reports something that the user must know.
    void showToast(std::string message, ToastType type);

    /// Opens a session for an item that was not chosen from a season list. A session in the mini player
    /// ends first; a series playlist survives only an episode of its own series. By value, here and below:
    /// the caller's item may be a field that changes on the way.
    void playChannel(Channel channel);
    /// Opens a session for an episode chosen from its season list. The index is not checked.
    void playSeriesEpisode(Channel channel, std::vector<XtreamEpisode> episodes, std::int64_t episodeIndex,
                           Channel parentChannel);
    /// Whether the root view shows the full-screen player.
    [[nodiscard]] bool presentsPlayer() const;
    /// What the root view does when the full-screen player has gone: nothing while it shrinks, otherwise
    /// the session ends.
    void playerDismissed();

    /// The stored account has come after the object was made.
    Q_SIGNAL void storedAccountCame();
    /// The account in use is another one, or there is none any more.
    Q_SIGNAL void accountChanged();

private:
    QCoro::Task<void> takeStoredAccount();
    void takeAccount(Credentials credentials);
    void endMiniPlayerSession();
    void clearPlaySession();

    KeychainQueue& m_keychain;
    PlayerManager& m_playerManager;
    URLSessionFactory m_makeSession;
};

} // namespace ondavia
