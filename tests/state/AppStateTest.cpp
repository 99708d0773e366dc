#include "StateFixture.h"

#include "protocol/XtreamAPIClient.h"

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;

class AppStateTest : public StateFixture {
protected:
    void storeAccount(const std::string& server, const std::string& username, const std::string& password) {
        keychain.set(server, KeychainService::serverKey);
        keychain.set(username, KeychainService::usernameKey);
        keychain.set(password, KeychainService::passwordKey);
    }
};

TEST_F(AppStateTest, StartsWithItsDefaults) {
    const auto state = startState();
    EXPECT_FALSE(state->hasCredentials());
    EXPECT_FALSE(state->isLoading());
    EXPECT_EQ(state->loadingMessage(), "");
    EXPECT_EQ(state->server() + state->username() + state->password(), "");
    EXPECT_FALSE(state->expirationDate());
    EXPECT_EQ(state->maxConnections(), 1);
    EXPECT_EQ(state->activeConnections(), 0);
    EXPECT_TRUE(state->liveCategories().empty());
    EXPECT_TRUE(state->vodCategories().empty());
    EXPECT_TRUE(state->seriesCategories().empty());
    EXPECT_EQ(state->totalLive() + state->totalMovies() + state->totalSeries(), 0);
    EXPECT_EQ(state->selectedTab(), AppTab::home);
    EXPECT_FALSE(state->toastMessage());
    EXPECT_EQ(state->toastType(), ToastType::info);
    EXPECT_FALSE(state->isPlaying());
    EXPECT_FALSE(state->currentChannel());
    EXPECT_FALSE(state->showMiniPlayer());
    EXPECT_TRUE(state->pendingSubtitleURLs().empty());
    EXPECT_TRUE(state->seriesEpisodes().empty());
    EXPECT_EQ(state->currentEpisodeIndex(), 0);
    EXPECT_FALSE(state->seriesParentChannel());
    EXPECT_EQ(state->makeXtreamClient(), nullptr);
}

TEST_F(AppStateTest, TabsAndToastsKeepTheirNumbers) {
    std::vector<int> numbers;
    for (const AppTab tab : allAppTabs) {
        numbers.push_back(static_cast<int>(tab));
    }
    EXPECT_THAT(numbers, ElementsAre(0, 1, 2, 3, 4));
    EXPECT_EQ(static_cast<int>(AppTab::favorites), 4);
    EXPECT_EQ(static_cast<int>(ToastType::error), 3);
}

TEST_F(AppStateTest, StartsWithTheStoredAccount) {
    storeAccount("http://tv.example", "ana", "secret");
    const auto state = startState();
    EXPECT_TRUE(state->hasCredentials());
    EXPECT_EQ(state->server(), "http://tv.example");
    EXPECT_EQ(state->username(), "ana");
    EXPECT_EQ(state->password(), "secret");
    const auto client = state->makeXtreamClient();
    ASSERT_TRUE(client);
    EXPECT_EQ(client->username(), "ana");
    EXPECT_NE(client, state->makeXtreamClient()) << "every call makes its own";
}

TEST_F(AppStateTest, MovesAnAccountOutOfTheSettingsBeforeItReads) {
    defaults.setString("ondavia_server", "http://old.example");
    defaults.setString("ondavia_username", "ana");
    defaults.setString("ondavia_password", "secret");
    const auto state = startState();
    EXPECT_TRUE(state->hasCredentials());
    EXPECT_EQ(state->server(), "http://old.example");
    EXPECT_FALSE(defaults.stringForKey("ondavia_password"));
}

TEST_F(AppStateTest, OneEmptyPartOfAnAccountMakesNoClient) {
    for (const auto& [server, username, password] : {std::tuple{"", "ana", "secret"},
                                                     {"http://tv.example", "", "secret"},
                                                     {"http://tv.example", "ana", ""}}) {
        storeAccount(server, username, password);
        const auto state = startState();
        EXPECT_TRUE(state->hasCredentials());
        EXPECT_EQ(state->makeXtreamClient(), nullptr);
    }
}

TEST_F(AppStateTest, SavesAnAccountAsItIs) {
    const auto state = startState();
    std::vector<std::string> order;
    for (const auto& [signal, name] : {std::pair{&AppState::serverChanged, "server"},
                                       {&AppState::usernameChanged, "username"},
                                       {&AppState::passwordChanged, "password"},
                                       {&AppState::hasCredentialsChanged, "hasCredentials"}}) {
        QObject::connect(state.get(), signal, state.get(),
                         [&order, name = name] { order.emplace_back(name); });
    }
    state->saveCredentials(" tv.example/ ", "ana", "secret");
    EXPECT_THAT(order, ElementsAre("server", "username", "password", "hasCredentials"));
    EXPECT_EQ(state->server(), " tv.example/ ");
    EXPECT_EQ(keychain.loadCredentials(), (Credentials{" tv.example/ ", "ana", "secret"}));
    EXPECT_FALSE(state->isLoading());
}

TEST_F(AppStateTest, LogsOutInOrder) {
    const auto state = startState();
    state->saveCredentials("http://tv.example", "ana", "secret");
    state->setLiveCategories({{"1", "News", 0}});
    state->setVodCategories({{"1", "Drama", 0}});
    state->setSeriesCategories({{"1", "Long", 0}});
    state->setTotalLive(1);
    state->setTotalMovies(2);
    state->setTotalSeries(3);
    state->playSeriesEpisode(movie(), {XtreamEpisode{}}, 1, liveChannel());
    state->setPendingSubtitleURLs({"http://tv.example/a.srt"});
    state->setShowMiniPlayer(true);
    std::vector<std::string> order;
    const auto note = [&](auto signal, const char* name) {
        QObject::connect(state.get(), signal, state.get(), [&order, name, this] {
            order.emplace_back(name);
            EXPECT_TRUE(keychain.loadCredentials()) << "the stored account goes last";
        });
    };
    note(&AppState::serverChanged, "server");
    note(&AppState::usernameChanged, "username");
    note(&AppState::passwordChanged, "password");
    note(&AppState::hasCredentialsChanged, "hasCredentials");
    note(&AppState::liveCategoriesChanged, "live");
    note(&AppState::vodCategoriesChanged, "vod");
    note(&AppState::seriesCategoriesChanged, "series");
    note(&AppState::totalLiveChanged, "totalLive");
    note(&AppState::totalMoviesChanged, "totalMovies");
    note(&AppState::totalSeriesChanged, "totalSeries");
    note(&AppState::currentChannelChanged, "channel");
    note(&AppState::isPlayingChanged, "isPlaying");
    note(&AppState::showMiniPlayerChanged, "mini");
    note(&AppState::seriesEpisodesChanged, "episodes");
    note(&AppState::currentEpisodeIndexChanged, "index");
    note(&AppState::seriesParentChannelChanged, "parent");
    note(&AppState::pendingSubtitleURLsChanged, "subtitles");
    state->logout();
    EXPECT_THAT(order, ElementsAre("server", "username", "password", "hasCredentials", "live", "vod",
                                   "series", "totalLive", "totalMovies", "totalSeries", "channel",
                                   "isPlaying", "mini", "episodes", "index", "parent", "subtitles"));
    EXPECT_FALSE(state->hasCredentials());
    EXPECT_EQ(state->makeXtreamClient(), nullptr);
    for (const char* key : {"ondavia_server", "ondavia_username", "ondavia_password"}) {
        EXPECT_FALSE(keychain.get(key)) << key;
    }
}

TEST_F(AppStateTest, LogoutLeavesTheRestAlone) {
    const auto state = startState();
    state->saveCredentials("http://tv.example", "ana", "secret");
    const Date expiry{std::chrono::seconds(1'700'000'000)};
    state->setExpirationDate(expiry);
    state->setMaxConnections(4);
    state->setActiveConnections(2);
    state->setIsLoading(true);
    state->setLoadingMessage("text");
    state->setSelectedTab(AppTab::series);
    state->showToast("toast", ToastType::warning);
    defaults.setStringArray("ondavia_live_cat_order", {"News"});
    defaults.setDate("ondavia_last_sync", expiry);
    state->logout();
    EXPECT_EQ(state->expirationDate(), expiry);
    EXPECT_EQ(state->maxConnections(), 4);
    EXPECT_EQ(state->activeConnections(), 2);
    EXPECT_TRUE(state->isLoading());
    EXPECT_EQ(state->loadingMessage(), "text");
    EXPECT_EQ(state->selectedTab(), AppTab::series);
    EXPECT_EQ(state->toastMessage(), "toast");
    EXPECT_EQ(state->toastType(), ToastType::warning);
    EXPECT_EQ(defaults.stringArrayForKey("ondavia_live_cat_order"), std::vector<std::string>{"News"});
    EXPECT_EQ(defaults.dateForKey("ondavia_last_sync"), expiry);
}

TEST_F(AppStateTest, AnAccountThatComesAndGoesIsNoLineOfTheLog) {
    const LogCapture log;
    defaults.setString("ondavia_server", "http://old.example");
    defaults.setString("ondavia_username", "ana");
    defaults.setString("ondavia_password", "secret");
    const auto state = startState();
    state->saveCredentials("http://tv.example", "ana", "secret");
    EXPECT_NE(state->makeXtreamClient(), nullptr);
    state->logout();
    state->logout();
    EXPECT_EQ(startState()->makeXtreamClient(), nullptr);
    EXPECT_EQ(log.text(), "");
}

TEST_F(AppStateTest, TheLastToastWins) {
    const auto state = startState();
    state->showToast("one", ToastType::error);
    state->showToast("two", ToastType::success);
    EXPECT_EQ(state->toastMessage(), "two");
    EXPECT_EQ(state->toastType(), ToastType::success);
}

TEST_F(AppStateTest, EveryFieldTellsOfItsOwnChangesOnly) {
    const auto state = startState();
    int loading = 0;
    int messages = 0;
    QObject::connect(state.get(), &AppState::isLoadingChanged, state.get(), [&] { ++loading; });
    QObject::connect(state.get(), &AppState::loadingMessageChanged, state.get(), [&] { ++messages; });
    state->setIsLoading(true);
    state->setIsLoading(true);
    EXPECT_EQ(loading, 1);
    EXPECT_EQ(messages, 0);
}

} // namespace
} // namespace ondavia::testing
