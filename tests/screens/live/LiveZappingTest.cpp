// The live player from channel to channel.
#include "LivePlayerFixture.h"
#include "personal/FavoritesService.h"
#include "store/StoreSamples.h"

#include <QGuiApplication>
#include <QScreen>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using LiveZappingTest = LivePlayerFixture;

TEST_F(LiveZappingTest, ControlsWaitForTheFirstTapAndStayFiveSeconds) {
    open();
    EXPECT_FALSE(player().controls()->showControls());
    scheduler.advance(1);
    player().controls()->toggleControls();
    EXPECT_TRUE(player().controls()->showControls());
    scheduler.advance(4.9);
    EXPECT_TRUE(player().controls()->showControls());
    player().levels()->volume()->tap();
    scheduler.advance(1);
    EXPECT_TRUE(player().controls()->showControls()) << "a slider is open";
    scheduler.advance(6.1);
    EXPECT_FALSE(player().controls()->showControls()) << "five seconds after it has closed";
}

TEST_F(LiveZappingTest, AnotherPictureBringsNoControls) {
    signIn();
    open(1);
    const auto expectNone = [this](const char* after) {
        drainEvents();
        EXPECT_FALSE(player().controls()->showControls()) << after;
        run();
    };
    commands.nextTrackCommand.send();
    expectNone("the remote control");
    ASSERT_EQ(onAir(), "main_2");
    player().chooseChannel(2);
    expectNone("a channel of the list");
    player().playCatchup({"p-1", "guia.3", "Ontem à Noite", std::nullopt, now - std::chrono::hours(20),
                          now - std::chrono::hours(19), std::nullopt});
    expectNone("a recording");
    player().retry();
    expectNone("another try");
    playerManager.togglePlayPause();
    EXPECT_TRUE(player().controls()->showControls()) << "a picture that stands still does";
}

TEST_F(LiveZappingTest, NextAndPreviousGoRoundInTheCategory) {
    open(3);
    player().switchToNextChannel();
    EXPECT_EQ(onAir(), "main_1");
    player().switchToPreviousChannel();
    EXPECT_EQ(onAir(), "main_3");
    player().switchToPreviousChannel();
    EXPECT_EQ(onAir(), "main_2");
    EXPECT_EQ(player().currentRow(), 1);
}

TEST_F(LiveZappingTest, TheOnlyChannelOfACategoryBeginsAnew) {
    open(4, "Música");
    player().switchToNextChannel();
    EXPECT_EQ(plays(4), 2);
    player().switchToPreviousChannel();
    EXPECT_EQ(plays(4), 3);
    EXPECT_EQ(onAir(), "main_4");
}

TEST_F(LiveZappingTest, FromOutsideOfTheCategoryBothGoToItsFirstChannel) {
    open(4, "Música");
    player().chooseCategory(0);
    EXPECT_EQ(player().selectedCategory(), "Notícias");
    EXPECT_EQ(onAir(), "main_4");
    EXPECT_EQ(player().currentRow(), -1);
    player().switchToPreviousChannel();
    EXPECT_EQ(onAir(), "main_1");
    player().chooseCategory(1);
    player().chooseCategory(2);
    player().switchToNextChannel();
    EXPECT_EQ(onAir(), "main_5");
}

TEST_F(LiveZappingTest, ACategoryMayHaveNoName) {
    fill({channel(1, ""), channel(2, "")});
    open(1, "");
    EXPECT_THAT(listed(), ElementsAre("Canal 1", "Canal 2"));
    EXPECT_EQ(player().categoryRow(), 0);
    player().switchToNextChannel();
    EXPECT_EQ(onAir(), "main_2");
}

TEST_F(LiveZappingTest, ACategoryWithoutChannelsLeadsNowhere) {
    open(8, "Desaparecidos");
    EXPECT_THAT(listed(), IsEmpty());
    EXPECT_EQ(player().categoryRow(), -1);
    journal.clear();
    player().switchToNextChannel();
    player().switchToPreviousChannel();
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_EQ(onAir(), "main_8");
}

TEST_F(LiveZappingTest, AZapTakesItsStepsInTheirOrder) {
    keepGuideFresh();
    broadcast("guia.2", "Telejornal", now - std::chrono::hours(1), now + std::chrono::hours(1));
    FavoritesService(store->mainContext(), "main").toggleFavorite("main_2");
    open(1);
    player().openGuide();
    player().guide()->setSelectedDate(QDateTime::currentDateTime().addDays(-2));
    const QObject listener;
    note(listener, player(), &LivePlayerViewModel::currentChannelChanged, "channel");
    note(listener, appState, &AppState::currentChannelChanged, "session");
    note(listener, player(), &LivePlayerViewModel::showEPGChanged, "list");
    note(listener, *player().guide(), &EPGPanelViewModel::selectedDateChanged, "today");
    note(listener, playerManager, &PlayerManager::lastOpenedURLChanged, "play");
    QObject::connect(&player(), &LivePlayerViewModel::currentProgramTitleChanged, &listener, [&] {
        steps.emplace_back(stored("main_2").lastAccessedAt ? "recorded, then programme" : "programme");
    });
    note(listener, player(), &LivePlayerViewModel::isFavoriteChanged, "favourite");
    player().switchToNextChannel();
    EXPECT_THAT(steps, ElementsAre("channel", "session", "list", "today", "play", "recorded, then programme",
                                   "favourite"));
    EXPECT_EQ(appState.currentChannel()->id, "main_2");
    EXPECT_EQ(playerManager.pendingStartPosition(), 0);
    EXPECT_EQ(player().guide()->selectedDate().date(), QDate::currentDate());
    EXPECT_TRUE(player().isFavorite());
    EXPECT_EQ(player().programTitle(), QStringLiteral("Telejornal"));
}

TEST_F(LiveZappingTest, TheOldStreamEndsBeforeTheNewOneBegins) {
    open(1);
    journal.clear();
    player().switchToNextChannel();
    const auto ended = std::ranges::find(journal, "shutdown " + url(1));
    const auto begun = std::ranges::find(journal, "create " + url(2));
    ASSERT_NE(ended, journal.end());
    ASSERT_NE(begun, journal.end());
    EXPECT_LT(ended - journal.begin(), begun - journal.begin());
}

TEST_F(LiveZappingTest, RecordingAnAccessChangesNothingElseAndTellsNobody) {
    Channel full = channel(7, "Regionais");
    full.plot = "Só para ver se fica";
    full.rating = "7.5";
    fill({full});
    int told = 0;
    const QObject listener;
    QObject::connect(store.get(), &LibraryStore::changed, &listener, [&told] { ++told; });
    open(7, "Regionais");
    drainEvents();
    EXPECT_EQ(told, 0) << "or every browser reads its lists again at each zap";
    full.lastAccessedAt = now;
    EXPECT_EQ(stored("main_7"), full);
}

TEST_F(LiveZappingTest, AChannelThatHasLeftTheCatalogueIsPlayedAndNotRecorded) {
    open(8, "Desaparecidos");
    EXPECT_EQ(plays(8), 1);
    EXPECT_EQ(store->mainContext().count<Channel>(field(&Channel::id) == "main_8"), 0);
}

TEST_F(LiveZappingTest, AnAccessThatCannotBeRecordedHoldsNothingUp) {
    executeRaw(folder.path() / "store" / "catalogue.db",
               "CREATE TRIGGER refuse BEFORE UPDATE ON channel BEGIN SELECT RAISE(ABORT, 'no'); END");
    open(1);
    player().switchToNextChannel();
    EXPECT_EQ(plays(2), 1);
    EXPECT_EQ(stored("main_2").lastAccessedAt, std::nullopt);
}

TEST_F(LiveZappingTest, RemoteNextAndPreviousWorkUntilTheFirstZap) {
    open(1);
    EXPECT_TRUE(offersNext());
    EXPECT_TRUE(offersPrevious());
    commands.nextTrackCommand.send();
    drainEvents();
    EXPECT_EQ(onAir(), "main_2");
    EXPECT_FALSE(offersNext());
    EXPECT_FALSE(offersPrevious());
    commands.nextTrackCommand.send();
    commands.previousTrackCommand.send();
    drainEvents();
    EXPECT_EQ(onAir(), "main_2") << "from then on they do nothing";
}

TEST_F(LiveZappingTest, RemotePreviousGoesRound) {
    open(1);
    commands.previousTrackCommand.send();
    drainEvents();
    EXPECT_EQ(onAir(), "main_3");
}

TEST_F(LiveZappingTest, ARetryPlaysTheChannelOnAir) {
    open(1);
    player().switchToNextChannel();
    playerManager.setError("Erro de reproducao");
    EXPECT_EQ(player().error(), QStringLiteral("Erro de reproducao"));
    player().retry();
    EXPECT_EQ(plays(2), 2);
    EXPECT_EQ(player().error(), QString());
}

TEST_F(LiveZappingTest, AChannelWhoseAddressIsNoneIsZappedAwayFrom) {
    Channel broken = channel(1, "Notícias");
    broken.url = "no address";
    open(broken);
    EXPECT_EQ(player().error(), QStringLiteral("URL invalido"));
    player().switchToNextChannel();
    EXPECT_EQ(plays(2), 1);
    EXPECT_EQ(player().error(), QString());
}

TEST_F(LiveZappingTest, TheHeartIsKeptForTheMainProfile) {
    open(1);
    player().toggleFavorite();
    EXPECT_TRUE(player().isFavorite());
    EXPECT_TRUE(FavoritesService(store->mainContext(), "main").isFavorite("main_1"));
    player().switchToNextChannel();
    EXPECT_FALSE(player().isFavorite());
    player().switchToPreviousChannel();
    EXPECT_TRUE(player().isFavorite());
    player().toggleFavorite();
    EXPECT_FALSE(player().isFavorite());
    EXPECT_FALSE(FavoritesService(store->mainContext(), "main").isFavorite("main_1"));
}

TEST_F(LiveZappingTest, TheWholeScreenIsLandscapeAndLeftByTheWayBack) {
    const Qt::ScreenOrientations landscape{Qt::LandscapeOrientation, Qt::InvertedLandscapeOrientation};
    open(1);
    player().toggleFullScreen();
    EXPECT_TRUE(player().isFullscreen());
    EXPECT_EQ(AppDelegate::supportedInterfaceOrientations(), landscape);
    player().levels()->brightness()->tap();
    EXPECT_TRUE(player().levels()->isSliderOpen());
    player().goBack();
    EXPECT_FALSE(player().isFullscreen());
    EXPECT_FALSE(player().levels()->isSliderOpen()) << "nobody could close it there";
    EXPECT_EQ(AppDelegate::supportedInterfaceOrientations(), Qt::ScreenOrientations(Qt::PortraitOrientation));
    EXPECT_TRUE(presentation.isPresented());
    player().goBack();
    EXPECT_TRUE(appState.showMiniPlayer());
    EXPECT_FALSE(presentation.isPresented());
}

TEST_F(LiveZappingTest, TheWayBackTakesTheUppermostLayerFirst) {
    keepGuideFresh();
    open(1);
    player().openGuide();
    player().guide()->setShowDatePicker(true);
    player().setShowCategories(true);
    player().openSettings();
    player().setShowKeys(true);
    player().number()->type(4);
    player().goBack();
    EXPECT_FALSE(player().number()->isTyping());
    EXPECT_TRUE(player().showKeys());
    player().goBack();
    EXPECT_FALSE(player().showKeys());
    EXPECT_TRUE(player().showSettings());
    player().goBack();
    EXPECT_FALSE(player().showSettings());
    EXPECT_TRUE(player().showCategories());
    player().goBack();
    EXPECT_FALSE(player().showCategories());
    EXPECT_TRUE(player().guide()->showDatePicker());
    player().goBack();
    EXPECT_FALSE(player().guide()->showDatePicker());
    EXPECT_TRUE(presentation.isPresented());
}

TEST_F(LiveZappingTest, ThePictureIsSixteenByNine) {
    open(1);
    EXPECT_EQ(player().containerWidth(), QGuiApplication::primaryScreen()->size().width())
        << "the screen's until the view is measured";
    player().setContainerWidth(400);
    EXPECT_DOUBLE_EQ(player().videoHeight(), 225);
}

TEST_F(LiveZappingTest, ChoosingFromTheMenuClosesIt) {
    open(1);
    player().setShowCategories(true);
    player().chooseCategory(2);
    EXPECT_FALSE(player().showCategories());
    EXPECT_THAT(listed(), ElementsAre("Canal 5"));
    player().setShowCategories(true);
    player().chooseCategory(7);
    EXPECT_EQ(player().selectedCategory(), "Desporto") << "there is no such row";
    player().chooseChannel(5);
    EXPECT_EQ(onAir(), "main_1");
    player().chooseChannel(0);
    EXPECT_EQ(onAir(), "main_5");
}

} // namespace
} // namespace ondavia::testing
