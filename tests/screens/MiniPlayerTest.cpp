#include "PlayerFixture.h"
#include "playback/PlayerManager.h"
#include "screens/player/MiniPlayerViewModel.h"

namespace ondavia::testing {
namespace {

constexpr double left = 102;

class MiniPlayerTest : public PlayerFixture {
protected:
    void minimise() {
        playFilm();
        player().minimizeToMini();
        drainEvents();
        mini.setContainer(400, 800);
    }
    [[nodiscard]] QPointF dropped(double x, double y) {
        mini.endDrag(x - mini.position().x(), y - mini.position().y());
        return mini.position();
    }
    MiniPlayerViewModel mini{appState, playerManager};
};

TEST_F(MiniPlayerTest, ShowsOnlyWhileTheSessionIsMinimised) {
    EXPECT_FALSE(mini.isShown());
    playFilm();
    EXPECT_FALSE(mini.isShown());
    player().minimizeToMini();
    EXPECT_TRUE(mini.isShown());
    EXPECT_EQ(mini.name(), QStringLiteral("Uma Longa Noite"));
    appState.setIsPlaying(false);
    EXPECT_FALSE(mini.isShown());
    appState.setIsPlaying(true);
    EXPECT_TRUE(mini.isShown());
    appState.setCurrentChannel(std::nullopt);
    EXPECT_FALSE(mini.isShown());
}

TEST_F(MiniPlayerTest, ComesFirstInTheLowerRightCornerAboveTheBar) {
    minimise();
    EXPECT_EQ(mini.position(), QPointF(400 - 102, 800 - 147));
    EXPECT_EQ(mini.corner(), QPointF(400 - 192, 800 - 202));
}

TEST_F(MiniPlayerTest, FollowsADragAndSettlesAtASide) {
    minimise();
    mini.drag(-20, -300);
    EXPECT_EQ(mini.corner(), QPointF(400 - 192 - 20, 800 - 202 - 300));
    EXPECT_EQ(mini.position(), QPointF(298, 653)) << "not before it is let go";
    mini.endDrag(-20, -300);
    EXPECT_EQ(mini.position(), QPointF(298, 353));
    EXPECT_EQ(mini.corner(), QPointF(208, 298));
    EXPECT_EQ(dropped(150, 500), QPointF(left, 500));
}

TEST_F(MiniPlayerTest, ADropOutsideTheBoundsLandsOnThem) {
    minimise();
    EXPECT_EQ(dropped(900, 400), QPointF(298, 400));
    EXPECT_EQ(dropped(-900, 400), QPointF(left, 400));
    EXPECT_EQ(dropped(350, -70), QPointF(298, 115));
    EXPECT_EQ(dropped(350, 5000), QPointF(298, 800 - 155));
}

TEST_F(MiniPlayerTest, TheMiddleBelongsToTheRight) {
    minimise();
    EXPECT_EQ(dropped(200, 400), QPointF(298, 400));
    EXPECT_EQ(dropped(199.9, 400), QPointF(left, 400));
}

TEST_F(MiniPlayerTest, ARotationMovesItToItsEdge) {
    minimise();
    mini.setContainer(800, 400);
    EXPECT_EQ(mini.position(), QPointF(left, 400 - 155)) << "from 298 of 800 the left edge is the nearer one";
    EXPECT_EQ(dropped(700, 200), QPointF(698, 200));
    mini.setContainer(400, 800);
    EXPECT_EQ(mini.position(), QPointF(298, 200));
}

TEST_F(MiniPlayerTest, StaysWhereItWasLeftForTheNextTime) {
    minimise();
    EXPECT_EQ(dropped(100, 300), QPointF(left, 300));
    mini.expand();
    drainEvents();
    player().minimizeToMini();
    drainEvents();
    mini.setContainer(400, 800);
    EXPECT_EQ(mini.position(), QPointF(left, 300));
}

TEST_F(MiniPlayerTest, ComesBackToItsFirstPlaceWhenNobodyMovedIt) {
    minimise();
    mini.expand();
    drainEvents();
    player().minimizeToMini();
    mini.setContainer(400, 800);
    EXPECT_EQ(mini.position(), QPointF(400 - 102, 800 - 147));
}

TEST_F(MiniPlayerTest, ExpandingGivesTheSessionBackToTheFullScreen) {
    minimise();
    journal.clear();
    mini.expand();
    EXPECT_TRUE(playerManager.isMiniPlayer()) << "the full-screen player takes that back itself";
    EXPECT_FALSE(mini.isShown());
    drainEvents();
    ASSERT_TRUE(presentation.isPresented());
    EXPECT_FALSE(playerManager.isMiniPlayer());
    EXPECT_TRUE(journal.empty());
}

TEST_F(MiniPlayerTest, ExpandingSaysThatTheSessionPlays) {
    minimise();
    appState.setIsPlaying(false);
    mini.expand();
    EXPECT_TRUE(appState.isPlaying());
}

TEST_F(MiniPlayerTest, ClosingEndsEverythingAndRecordsNothingByItself) {
    minimise();
    reach(60, 100);
    std::vector<std::string> order;
    const auto note = [this, &order](auto* object, auto signal, const char* name) {
        QObject::connect(object, signal, &mini, [&order, name] { order.emplace_back(name); });
    };
    note(&playerManager, &PlayerManager::playerChanged, "stop");
    note(&appState, &AppState::showMiniPlayerChanged, "showMiniPlayer");
    note(&appState, &AppState::isPlayingChanged, "isPlaying");
    note(&appState, &AppState::currentChannelChanged, "currentChannel");
    note(&playerManager, &PlayerManager::isMiniPlayerChanged, "isMiniPlayer");
    mini.close();
    drainEvents();
    EXPECT_THAT(order, ::testing::ElementsAre("stop", "showMiniPlayer", "isPlaying", "currentChannel",
                                              "isMiniPlayer"));
    EXPECT_FALSE(mini.isShown());
    EXPECT_FALSE(presentation.isPresented());
    EXPECT_FALSE(row("main_1"));
}

TEST_F(MiniPlayerTest, ItsButtonsSteerTheManager) {
    minimise();
    EXPECT_TRUE(mini.isPlaying());
    mini.togglePlayPause();
    EXPECT_FALSE(mini.isPlaying());
    mini.toggleMute();
    EXPECT_TRUE(mini.isMuted());
    EXPECT_FALSE(mini.isWaiting());
    playerManager.setIsBuffering(true);
    EXPECT_TRUE(mini.isWaiting());
    playerManager.setIsPlaying(true);
    EXPECT_FALSE(mini.isWaiting());
}

TEST_F(MiniPlayerTest, StaysWhenTheEngineStopsByItself) {
    minimise();
    playerManager.stop();
    EXPECT_TRUE(mini.isShown());
}

} // namespace
} // namespace ondavia::testing
