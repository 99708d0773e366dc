// How the live player comes into sight and goes out of it.
#include "LivePlayerFixture.h"
#include "personal/FavoritesService.h"
#include "screens/player/MiniPlayerViewModel.h"

#include <QPointer>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LiveSessionTest : public LivePlayerFixture {
protected:
    const Qt::ScreenOrientations portrait{Qt::PortraitOrientation};
    const Qt::ScreenOrientations landscape{Qt::LandscapeOrientation, Qt::InvertedLandscapeOrientation};
};

TEST_F(LiveSessionTest, BeginsWithTheSessionsChannelInItsCategory) {
    now += std::chrono::hours(1);
    screenBrightness.level = 0.8;
    audio.volume = 0.25F;
    open(2);
    EXPECT_EQ(plays(2), 1);
    EXPECT_EQ(playerManager.pendingStartPosition(), 0);
    EXPECT_EQ(player().initialChannel().id, "main_2");
    EXPECT_EQ(onAir(), "main_2");
    EXPECT_EQ(player().title(), QStringLiteral("Canal 2"));
    EXPECT_EQ(player().selectedCategory(), "Notícias");
    EXPECT_THAT(listed(), ElementsAre("Canal 1", "Canal 2", "Canal 3"));
    EXPECT_EQ(player().currentRow(), 1);
    EXPECT_EQ(player().categoryRow(), 0);
    EXPECT_FALSE(player().showEPG());
    EXPECT_FALSE(player().isFullscreen());
    EXPECT_FALSE(player().isFavorite());
    EXPECT_FALSE(player().epgLoaded());
    EXPECT_DOUBLE_EQ(player().levels()->brightness()->value(), 0.8);
    EXPECT_DOUBLE_EQ(player().levels()->volume()->value(), 0.25);
    EXPECT_EQ(AppDelegate::supportedInterfaceOrientations(), portrait);
    EXPECT_EQ(stored("main_2").lastAccessedAt, now);
}

TEST_F(LiveSessionTest, ComingIntoSightTakesItsStepsInTheirOrder) {
    FavoritesService(store->mainContext(), "main").toggleFavorite("main_1");
    broadcast("guia.1", "Telejornal", now - std::chrono::hours(1), now + std::chrono::hours(1));
    screenBrightness.level = 0.8;
    audio.volume = 0.25F;
    commands.nextTrackCommand.setEnabled(false);
    commands.previousTrackCommand.setEnabled(false);
    const auto view = make(channel(1, "Notícias"));
    const QObject listener;
    note(listener, playerManager, &PlayerManager::lastOpenedURLChanged, "play");
    QObject::connect(&playerManager, &PlayerManager::lastOpenedURLChanged, &listener, [&] {
        EXPECT_EQ(AppDelegate::supportedInterfaceOrientations(), portrait);
        EXPECT_DOUBLE_EQ(view->levels()->brightness()->value(), 0.8);
        EXPECT_DOUBLE_EQ(view->levels()->volume()->value(), 0.25);
        EXPECT_FALSE(offersNext());
    });
    note(listener, *view, &LivePlayerViewModel::isFavoriteChanged, "favourite");
    QObject::connect(view.get(), &LivePlayerViewModel::isFavoriteChanged, &listener, [&] {
        EXPECT_TRUE(offersNext());
        EXPECT_TRUE(offersPrevious());
    });
    note(listener, *view, &LivePlayerViewModel::currentProgramTitleChanged, "programme");
    QObject::connect(view.get(), &LivePlayerViewModel::currentProgramTitleChanged, &listener,
                     [&] { EXPECT_EQ(stored("main_1").lastAccessedAt, std::nullopt); });
    view->appear();
    EXPECT_THAT(steps, ElementsAre("play", "favourite", "programme"));
    EXPECT_EQ(stored("main_1").lastAccessedAt, now);
    view->disappear();
}

TEST_F(LiveSessionTest, AFavouriteIsKnownFromTheBeginning) {
    FavoritesService(store->mainContext(), "main").toggleFavorite("main_2");
    open(2);
    EXPECT_TRUE(player().isFavorite());
}

TEST_F(LiveSessionTest, NothingOfAChannelGoesIntoTheHistory) {
    open();
    EXPECT_FALSE(playerManager.onProgressUpdate());
    playerManager.setDuration(100);
    playerManager.setCurrentTime(50);
    scheduler.advance(10);
    player().minimizeToMini();
    drainEvents();
    reexpand();
    player().close();
    EXPECT_EQ(store->mainContext().count<WatchHistory>(), 0);
}

TEST_F(LiveSessionTest, ExpandingTheMiniPlayerKeepsTheStreamAndBringsTheRemoteCommandsBack) {
    FavoritesService(store->mainContext(), "main").toggleFavorite("main_2");
    open(1);
    player().switchToNextChannel();
    run();
    ASSERT_FALSE(offersNext());
    player().minimizeToMini();
    drainEvents();
    journal.clear();
    now += std::chrono::hours(1);
    broadcast("guia.2", "Telejornal", now - std::chrono::minutes(10), now + std::chrono::hours(1));
    reexpand();
    ASSERT_TRUE(presentation.isPresented());
    EXPECT_EQ(onAir(), "main_2");
    EXPECT_FALSE(playerManager.isMiniPlayer());
    EXPECT_THAT(journal, IsEmpty()) << "the engine hears nothing of it";
    EXPECT_TRUE(offersNext());
    EXPECT_TRUE(offersPrevious());
    EXPECT_TRUE(player().isFavorite());
    EXPECT_EQ(player().currentProgramTitle(), "Telejornal");
    EXPECT_EQ(stored("main_2").lastAccessedAt, now);
    commands.nextTrackCommand.send();
    drainEvents();
    EXPECT_EQ(onAir(), "main_3");
}

TEST_F(LiveSessionTest, ARemoteCommandThatComesWhenTheViewHasGoneDoesNothing) {
    open(1);
    player().minimizeToMini();
    drainEvents();
    ASSERT_FALSE(presentation.isPresented());
    commands.nextTrackCommand.send();
    drainEvents();
    EXPECT_EQ(appState.currentChannel()->id, "main_1");
}

TEST_F(LiveSessionTest, MinimisingKeepsPlaying) {
    open(1);
    player().controls()->toggleControls();
    journal.clear();
    const int timers = scheduler.activeTimers();
    const QObject listener;
    note(listener, appState, &AppState::showMiniPlayerChanged, "showMiniPlayer");
    note(listener, playerManager, &PlayerManager::isMiniPlayerChanged, "isMiniPlayer");
    note(listener, player(), &PlayerScreen::dismissed, "dismissed");
    QObject::connect(&appState, &AppState::showMiniPlayerChanged, &listener, [&] {
        EXPECT_EQ(scheduler.activeTimers(), timers - 1) << "nothing is to hide the controls any more";
    });
    player().minimizeToMini();
    drainEvents();
    EXPECT_FALSE(presentation.isPresented());
    EXPECT_TRUE(appState.showMiniPlayer());
    EXPECT_TRUE(playerManager.isMiniPlayer());
    EXPECT_TRUE(appState.isPlaying());
    EXPECT_EQ(appState.currentChannel()->id, "main_1");
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_THAT(steps, ElementsAre("showMiniPlayer", "isMiniPlayer", "dismissed"));
}

TEST_F(LiveSessionTest, TheMiniPlayerShowsTheChannelAndClosesIt) {
    MiniPlayerViewModel mini(appState, playerManager);
    open(1);
    player().switchToNextChannel();
    player().minimizeToMini();
    drainEvents();
    EXPECT_TRUE(mini.isShown());
    EXPECT_EQ(mini.name(), QStringLiteral("Canal 2"));
    mini.expand();
    drainEvents();
    ASSERT_TRUE(presentation.isPresented());
    player().minimizeToMini();
    drainEvents();
    mini.close();
    drainEvents();
    EXPECT_FALSE(mini.isShown());
    EXPECT_FALSE(presentation.isPresented());
    EXPECT_EQ(std::ranges::count(journal, "shutdown " + url(2)), 1);
    EXPECT_FALSE(appState.isPlaying());
}

TEST_F(LiveSessionTest, GoingOutOfSightTakesItsStepsInTheirOrder) {
    open(1);
    player().setIsFullscreen(true);
    player().controls()->toggleControls();
    const QObject listener;
    note(listener, playerManager, &PlayerManager::playerChanged, "stop");
    QObject::connect(&playerManager, &PlayerManager::playerChanged, &listener,
                     [&] { EXPECT_EQ(scheduler.activeTimers(), 0) << "that of the controls goes first"; });
    note(listener, appState, &AppState::isPlayingChanged, "isPlaying");
    note(listener, appState, &AppState::currentChannelChanged, "currentChannel");
    QObject::connect(&appState, &AppState::currentChannelChanged, &listener, [&] {
        EXPECT_EQ(AppDelegate::supportedInterfaceOrientations(), landscape)
            << "the last step turns the screen";
    });
    player().close();
    EXPECT_THAT(steps, ElementsAre("stop", "isPlaying", "currentChannel"));
    EXPECT_EQ(AppDelegate::supportedInterfaceOrientations(), portrait);
}

TEST_F(LiveSessionTest, LeavingEndsPlaybackAndSessionAndTheTimers) {
    open(1);
    player().setIsFullscreen(true);
    player().controls()->toggleControls();
    player().number()->type(2);
    const QPointer<LivePlayerViewModel> leaving(&player());
    player().close();
    EXPECT_EQ(std::ranges::count(journal, "shutdown " + url(1)), 1);
    EXPECT_FALSE(appState.isPlaying());
    EXPECT_FALSE(appState.currentChannel());
    EXPECT_EQ(AppDelegate::supportedInterfaceOrientations(), portrait);
    ASSERT_TRUE(leaving);
    EXPECT_EQ(scheduler.activeTimers(), 0);
}

TEST_F(LiveSessionTest, ASessionEndedElsewhereEndsPlayback) {
    open(1);
    appState.setCurrentChannel(std::nullopt);
    EXPECT_EQ(std::ranges::count(journal, "shutdown " + url(1)), 1);
    EXPECT_FALSE(presentation.isPresented());
}

} // namespace
} // namespace ondavia::testing
