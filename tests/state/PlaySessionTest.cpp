#include "StateFixture.h"

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;

Channel seriesItem(std::optional<std::int64_t> seriesId, const std::string& id) {
    Channel channel;
    channel.id = id;
    channel.type = "series";
    channel.seriesId = seriesId;
    channel.url = "http://tv.example/series/" + id;
    return channel;
}

class PlaySessionTest : public StateFixture {
protected:
    void holdPlaylist() {
        state->playSeriesEpisode(seriesItem(7, "ep2"), std::vector<XtreamEpisode>(3), 1, parent);
    }
    void minimise() {
        manager->play(*state->currentChannel(), 0);
        manager->setIsMiniPlayer(true);
        state->setShowMiniPlayer(true);
        journal.clear();
    }
    /// Writes every change from here on into the journal, among what is asked of the engine.
    void noteChanges() {
        const auto note = [this](auto* object, auto signal, const char* name) {
            QObject::connect(object, signal, object, [this, name] { journal.emplace_back(name); });
        };
        note(state.get(), &AppState::showMiniPlayerChanged, "mini");
        note(manager.get(), &PlayerManager::isMiniPlayerChanged, "managerMini");
        note(state.get(), &AppState::seriesEpisodesChanged, "episodes");
        note(state.get(), &AppState::currentEpisodeIndexChanged, "index");
        note(state.get(), &AppState::seriesParentChannelChanged, "parent");
        note(state.get(), &AppState::currentChannelChanged, "channel");
        note(state.get(), &AppState::isPlayingChanged, "isPlaying");
    }
    void expectNoPlaylist() const {
        EXPECT_TRUE(state->seriesEpisodes().empty());
        EXPECT_EQ(state->currentEpisodeIndex(), 0);
        EXPECT_FALSE(state->seriesParentChannel());
    }
    void expectPlaylist() const {
        EXPECT_EQ(state->seriesEpisodes().size(), 3U);
        EXPECT_EQ(state->currentEpisodeIndex(), 1);
        EXPECT_EQ(state->seriesParentChannel(), parent);
    }

    Channel parent = seriesItem(7, "parent");
    std::unique_ptr<AppState> state = startState();
};

TEST_F(PlaySessionTest, AnItemOpensASession) {
    state->setPendingSubtitleURLs({"http://tv.example/a.srt"});
    state->playChannel(movie());
    EXPECT_TRUE(state->isPlaying());
    EXPECT_EQ(state->currentChannel(), movie());
    EXPECT_TRUE(state->presentsPlayer());
    EXPECT_EQ(state->pendingSubtitleURLs().size(), 1U) << "not touched";
    EXPECT_TRUE(journal.empty()) << "the player screens play, not the state";
}

TEST_F(PlaySessionTest, TheItemIsThereBeforeTheSessionIs) {
    bool hadChannel = false;
    QObject::connect(state.get(), &AppState::isPlayingChanged, state.get(),
                     [&] { hadChannel = state->currentChannel().has_value(); });
    state->playChannel(movie());
    EXPECT_TRUE(hadChannel);
}

TEST_F(PlaySessionTest, AnEpisodeFromItsSeasonBringsThePlaylist) {
    holdPlaylist();
    expectPlaylist();
    EXPECT_TRUE(state->isPlaying());
    EXPECT_EQ(state->currentChannel()->id, "ep2");
    state->playSeriesEpisode(seriesItem(7, "ep"), {}, 99, parent);
    EXPECT_EQ(state->currentEpisodeIndex(), 99) << "not checked";
}

TEST_F(PlaySessionTest, OnlyAnEpisodeOfTheSameSeriesKeepsThePlaylist) {
    holdPlaylist();
    state->playChannel(seriesItem(7, "ep3"));
    expectPlaylist();
    state->playChannel(seriesItem(8, "other"));
    expectNoPlaylist();

    holdPlaylist();
    state->playChannel(movie());
    expectNoPlaylist();

    holdPlaylist();
    state->playChannel(seriesItem(std::nullopt, "unknown"));
    expectNoPlaylist();

    holdPlaylist();
    Channel film = movie();
    film.seriesId = 7;
    state->playChannel(film);
    expectNoPlaylist();
}

TEST_F(PlaySessionTest, TwoAbsentSeriesAreEqual) {
    state->setCurrentEpisodeIndex(5);
    state->playChannel(seriesItem(std::nullopt, "unknown"));
    EXPECT_EQ(state->currentEpisodeIndex(), 5) << "the empty playlist is left alone";
    state->playChannel(seriesItem(7, "ep"));
    EXPECT_EQ(state->currentEpisodeIndex(), 0) << "no parent has no series";
}

TEST_F(PlaySessionTest, APlaylistOfAnUnknownSeriesSurvivesAnItemOfOne) {
    parent = seriesItem(std::nullopt, "parent");
    holdPlaylist();
    state->playChannel(seriesItem(std::nullopt, "unknown"));
    expectPlaylist();
    state->playChannel(seriesItem(7, "ep"));
    expectNoPlaylist();
}

TEST_F(PlaySessionTest, AnItemOpensItsSessionInOrder) {
    holdPlaylist();
    minimise();
    state->setIsPlaying(false);
    noteChanges();
    state->playChannel(movie());
    EXPECT_THAT(journal, ElementsAre("shutdown http://tv.example/series/ep2", "released", "mini",
                                     "managerMini", "episodes", "index", "parent", "channel", "isPlaying"));
}

TEST_F(PlaySessionTest, AnEpisodeOpensItsSessionInOrder) {
    state->playChannel(movie());
    minimise();
    state->setIsPlaying(false);
    noteChanges();
    holdPlaylist();
    EXPECT_THAT(journal, ElementsAre("shutdown " + movie().url, "released", "mini", "managerMini", "episodes",
                                     "index", "parent", "channel", "isPlaying"));
}

TEST_F(PlaySessionTest, DismissingEndsTheSessionInOrder) {
    state->playChannel(movie());
    noteChanges();
    state->playerDismissed();
    EXPECT_THAT(journal, ElementsAre("isPlaying", "channel"));
}

TEST_F(PlaySessionTest, AnItemMayBeTheStatesOwn) {
    Channel film = movie();
    film.name = std::string(100, 'n');
    state->setSeriesParentChannel(film);
    state->playChannel(*state->seriesParentChannel());
    EXPECT_EQ(state->currentChannel(), film);
}

TEST_F(PlaySessionTest, ANewItemEndsTheMiniPlayersSession) {
    state->playChannel(liveChannel());
    minimise();
    state->playChannel(movie());
    EXPECT_THAT(journal, ::testing::Contains(::testing::StartsWith("shutdown")));
    EXPECT_FALSE(state->showMiniPlayer());
    EXPECT_FALSE(manager->isMiniPlayer());
    EXPECT_TRUE(state->presentsPlayer());
    EXPECT_EQ(state->currentChannel(), movie());

    minimise();
    state->playSeriesEpisode(seriesItem(7, "ep"), {}, 0, parent);
    EXPECT_FALSE(state->showMiniPlayer());
    EXPECT_FALSE(manager->isMiniPlayer());
    EXPECT_FALSE(manager->player());
}

TEST_F(PlaySessionTest, WithoutAMiniPlayerNothingIsStopped) {
    state->playChannel(liveChannel());
    manager->play(liveChannel(), 0);
    manager->setIsMiniPlayer(true);
    state->playChannel(movie());
    EXPECT_TRUE(manager->player());
    EXPECT_TRUE(manager->isMiniPlayer());
}

TEST_F(PlaySessionTest, LogoutLeavesARunningPlayerAsItWas) {
    holdPlaylist();
    minimise();
    const auto engineBefore = manager->player();
    state->logout();
    EXPECT_FALSE(state->isPlaying());
    EXPECT_FALSE(state->currentChannel());
    EXPECT_FALSE(state->showMiniPlayer());
    expectNoPlaylist();
    EXPECT_EQ(manager->player(), engineBefore);
    EXPECT_TRUE(manager->isMiniPlayer());
    EXPECT_TRUE(journal.empty());
}

TEST_F(PlaySessionTest, ThePlayerIsPresentedWhileASessionIsOpenAndNotSmall) {
    EXPECT_FALSE(state->presentsPlayer());
    state->setIsPlaying(true);
    EXPECT_FALSE(state->presentsPlayer()) << "without an item";
    state->setCurrentChannel(movie());
    EXPECT_TRUE(state->presentsPlayer());
    state->setShowMiniPlayer(true);
    EXPECT_FALSE(state->presentsPlayer());
    state->setShowMiniPlayer(false);
    state->setIsPlaying(false);
    EXPECT_FALSE(state->presentsPlayer());
}

TEST_F(PlaySessionTest, DismissingEndsTheSessionUnlessItShrinks) {
    state->playChannel(movie());
    state->setShowMiniPlayer(true);
    state->playerDismissed();
    EXPECT_TRUE(state->isPlaying());
    EXPECT_TRUE(state->currentChannel());
    state->setShowMiniPlayer(false);
    state->playerDismissed();
    EXPECT_FALSE(state->isPlaying());
    EXPECT_FALSE(state->currentChannel());
}

} // namespace
} // namespace ondavia::testing
