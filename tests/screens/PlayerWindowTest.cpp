// The player in the window, under real keys and a real pointer.
#include "PlayerWindow.h"

namespace ondavia::testing {
namespace {

TEST_F(PlayerWindowTest, KeysSteerTheFilmFromTheFirstOneOn) {
    playFilm();
    EXPECT_EQ(focusName(), "Uma Longa Noite") << "the picture has the focus, no control";
    press(Qt::Key_Right);
    EXPECT_EQ(playerManager.currentTime(), 110);
    press(Qt::Key_J);
    EXPECT_EQ(playerManager.currentTime(), 100);
    press(Qt::Key_Space);
    EXPECT_FALSE(playerManager.isPlaying());
    press(Qt::Key_K);
    EXPECT_TRUE(playerManager.isPlaying());
    press(Qt::Key_Up);
    EXPECT_EQ(systemVolume.asked.size(), 1U);
    EXPECT_GT(systemVolume.asked.back(), 0.5F);
    settle();
    EXPECT_NE(find(QStringLiteral("Volume 55%")), nullptr);
    press(Qt::Key_M);
    EXPECT_TRUE(playerManager.isMuted());
    press(Qt::Key_Escape);
    EXPECT_FALSE(appState.isPlaying());
    settle();
    EXPECT_EQ(find(QStringLiteral("Reproduzir")), nullptr);
}

TEST_F(PlayerWindowTest, EnterLeadsToTheControlsAndArrowsThroughThem) {
    playFilm();
    press(Qt::Key_Return);
    EXPECT_EQ(focusName(), "Pausa");
    press(Qt::Key_Right);
    EXPECT_EQ(focusName(), "Avançar 10 segundos");
    EXPECT_EQ(playerManager.currentTime(), 100);
    press(Qt::Key_Return);
    EXPECT_EQ(playerManager.currentTime(), 110);
    press(Qt::Key_Down);
    EXPECT_EQ(focusName(), "Posição");
    press(Qt::Key_Right);
    EXPECT_EQ(playerManager.currentTime(), 120) << "on the bar the arrows move the film";
    EXPECT_EQ(focusName(), "Posição");
    scheduler.advance(5.1);
    settle();
    EXPECT_FALSE(player().controls()->showControls());
    EXPECT_EQ(focusName(), "Uma Longa Noite") << "controls that have gone hold no focus";
    press(Qt::Key_Left);
    EXPECT_EQ(playerManager.currentTime(), 110);
    EXPECT_TRUE(player().controls()->showControls());
}

TEST_F(PlayerWindowTest, AClickOnAButtonLeavesTheKeysToTheFilm) {
    playFilm();
    click("Silenciar");
    EXPECT_TRUE(playerManager.isMuted());
    press(Qt::Key_Right);
    EXPECT_EQ(playerManager.currentTime(), 110);
}

TEST_F(PlayerWindowTest, ASingleClickHidesTheControlsAndADoubleOneSeeks) {
    playFilm();
    clickAt({300, 250});
    EXPECT_TRUE(player().controls()->showControls());
    waitAfterClicks();
    EXPECT_FALSE(player().controls()->showControls());
    EXPECT_EQ(find(QStringLiteral("Pausa")), nullptr);
    doubleClickAt({1100, 250});
    EXPECT_EQ(playerManager.currentTime(), 110);
    settle();
    EXPECT_NE(find(QStringLiteral("10")), nullptr) << "the badge";
    ASSERT_NE(named("skipBadge"), nullptr);
    EXPECT_GT(named("skipBadge")->mapToScene(QPointF()).x(), 640);
    waitAfterClicks();
    EXPECT_EQ(named("skipBadge"), nullptr);
    doubleClickAt({100, 250});
    EXPECT_EQ(playerManager.currentTime(), 100);
    settle();
    ASSERT_NE(named("skipBadge"), nullptr);
    EXPECT_LT(named("skipBadge")->mapToScene(QPointF()).x(), 640);
}

TEST_F(PlayerWindowTest, ThePointerHidesWithTheControlsAndBringsThemBack) {
    playFilm();
    QTest::mouseMove(window, {400, 300});
    drainEvents();
    EXPECT_EQ(window->cursor().shape(), Qt::ArrowCursor);
    scheduler.advance(5.1);
    settle();
    ASSERT_FALSE(player().controls()->showControls());
    EXPECT_EQ(window->cursor().shape(), Qt::BlankCursor);
    QTest::mouseMove(window, {402, 301});
    drainEvents();
    EXPECT_FALSE(player().controls()->showControls()) << "it trembled";
    QTest::mouseMove(window, {460, 330});
    drainEvents();
    EXPECT_TRUE(player().controls()->showControls());
    settle();
    EXPECT_EQ(window->cursor().shape(), Qt::ArrowCursor);
    QQuickItem* button = find(QStringLiteral("Pausa"));
    QTest::mouseMove(window,
                     button->mapToScene(QPointF(button->width() / 2, button->height() / 2)).toPoint());
    drainEvents();
    scheduler.advance(5.1);
    settle();
    EXPECT_EQ(window->cursor().shape(), Qt::BlankCursor) << "also where it rested on a control";
}

TEST_F(PlayerWindowTest, SubtitlesStandAboveTheControls) {
    playFilm();
    QQuickItem video;
    auto& view = dynamic_cast<FakeView&>(*lastEngine.lock()->view());
    view.picture = &video;
    player().controls()->wake();
    window->resize(window->width(), 600);
    settle();
    const double covered = view.coveredBottom * 600;
    QQuickItem* bar = find(QStringLiteral("Posição"));
    ASSERT_NE(bar, nullptr);
    EXPECT_GE(covered, 600 - bar->mapToScene({0, 0}).y());
    EXPECT_LT(covered, 200);
    scheduler.advance(5.1);
    EXPECT_EQ(view.coveredBottom, 0);
    video.setParentItem(nullptr);
    view.picture = nullptr;
}

TEST_F(PlayerWindowTest, TabLeadsToTheControlsAlsoWhenTheyHaveGone) {
    playFilm();
    scheduler.advance(5.1);
    settle();
    ASSERT_FALSE(player().controls()->showControls());
    press(Qt::Key_Tab);
    EXPECT_EQ(focusName(), "Pausa");
}

TEST_F(PlayerWindowTest, TheWheelChangesTheVolume) {
    playFilm();
    QTest::mouseMove(window, {400, 300});
    const QPointF place(400, 300);
    for (const int turn : {120, -120, -120}) {
        QWheelEvent wheel(place, place, {}, {0, turn}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(window, &wheel);
    }
    ASSERT_EQ(systemVolume.asked.size(), 3U);
    EXPECT_GT(systemVolume.asked[0], 0.5F);
    EXPECT_LT(systemVolume.asked[2], 0.5F);
}

TEST_F(PlayerWindowTest, TheSeekBarIsEasyToHitAndSeeksWhenLetGo) {
    playFilm();
    QQuickItem* bar = find(QStringLiteral("Posição"));
    ASSERT_NE(bar, nullptr);
    EXPECT_GE(bar->height(), 44);
    const QPoint origin = bar->mapToScene(QPointF()).toPoint();
    const auto at = [&](double fraction) {
        // At its very top, where a thumb may land.
        return origin + QPoint(static_cast<int>(bar->width() * fraction), 2);
    };
    journal.clear();
    QTest::mousePress(window, Qt::LeftButton, {}, at(0.5));
    drainEvents();
    EXPECT_TRUE(player().seekBar()->isSeeking());
    QTest::mouseMove(window, at(0.25));
    drainEvents();
    EXPECT_THAT(journal, ::testing::IsEmpty());
    EXPECT_NEAR(player().seekBar()->shownTime(), 250, 5);
    QTest::mouseRelease(window, Qt::LeftButton, {}, at(0.75));
    drainEvents();
    EXPECT_NEAR(playerManager.currentTime(), 750, 5);
    EXPECT_FALSE(player().seekBar()->isSeeking());
}

TEST_F(PlayerWindowTest, ALowWindowHasEveryControlToo) {
    playFilm();
    window->resize(892, 412);
    settle();
    for (const char* name : {"Brilho", "Volume", "Posição", "Pausa", "Fechar"}) {
        EXPECT_NE(find(QString::fromUtf8(name)), nullptr) << name;
    }
    shoot("player-low");
    click("Volume");
    EXPECT_TRUE(player().levels()->isSliderOpen());
    settle();
    shoot("player-low-volume");
}

TEST_F(PlayerWindowTest, ALevelLeftOpenClosesWhenTheControlsAreBack) {
    playFilm();
    click("Volume");
    clickAt({640, 250});
    scheduler.advance(0.5);
    settle();
    ASSERT_FALSE(player().controls()->showControls());
    ASSERT_TRUE(player().levels()->isSliderOpen());
    press(Qt::Key_Right);
    settle();
    scheduler.advance(2.1);
    EXPECT_FALSE(player().levels()->isSliderOpen());
}

TEST_F(PlayerWindowTest, AWindowThatClosesKeepsWhatWasWatched) {
    playFilm();
    reach(990, 1000);
    screens.reset();
    const auto row = store->mainContext().fetchFirst<WatchHistory>({});
    ASSERT_TRUE(row);
    EXPECT_EQ(row->position, 990);
    EXPECT_TRUE(row->isComplete);
    EXPECT_FALSE(playerManager.player());
}

TEST_F(PlayerWindowTest, TheSheetIsChosenFromByKeyboardAndClosedByATapBesideIt) {
    playFilm();
    press(Qt::Key_S);
    settle();
    ASSERT_NE(named("sheetPanel"), nullptr);
    EXPECT_EQ(named("sheetPanel")->width(), 350);
    EXPECT_EQ(focusName(), "Fechar") << window->activeFocusItem()->metaObject()->className();
    for (int step = 0; step < 4; ++step) {
        press(Qt::Key_Down);
    }
    EXPECT_EQ(focusName(), "Velocidade, 1x");
    press(Qt::Key_Return);
    settle();
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(focusName(), "0.75x");
    press(Qt::Key_Return);
    settle();
    EXPECT_EQ(focusName(), "Velocidade, 0.75x") << "who chose stays with the section";
    EXPECT_EQ(playerManager.currentTime(), 100) << "arrows mean the sheet here";
    EXPECT_TRUE(systemVolume.asked.empty());
    clickAt({200, 400});
    settle();
    EXPECT_EQ(named("sheetPanel"), nullptr);
    EXPECT_NE(find(QStringLiteral("0.75x")), nullptr) << "the label of the speed";
    press(Qt::Key_S);
    settle();
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(named("sheetPanel"), nullptr);
    EXPECT_TRUE(appState.isPlaying());
    EXPECT_EQ(focusName(), "Uma Longa Noite");
}

TEST_F(PlayerWindowTest, TheListOfKeysComesAndGoes) {
    playFilm();
    press(Qt::Key_Question);
    settle();
    EXPECT_NE(find(QStringLiteral("Espaço, K: Reproduzir ou pausar")), nullptr);
    shoot("player-keys");
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(find(QStringLiteral("Espaço, K: Reproduzir ou pausar")), nullptr);
    EXPECT_TRUE(appState.isPlaying());
}

TEST_F(PlayerWindowTest, TheListOfKeysCanBeScrolledInALowWindow) {
    playFilm();
    window->resize(892, 480);
    settle();
    press(Qt::Key_Question);
    settle();
    press(Qt::Key_PageDown);
    settle();
    QQuickItem* last = find(QStringLiteral("Esc: Sair"));
    ASSERT_NE(last, nullptr) << "the key scrolls and does not send the list away";
    EXPECT_LT(last->mapToScene(QPointF(0, last->height())).y(), window->height());
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(find(QStringLiteral("Esc: Sair")), nullptr);
}

TEST_F(PlayerWindowTest, FillsTheScreenAndLeavesItAsItWas) {
    playFilm();
    const auto former = window->visibility();
    press(Qt::Key_F);
    EXPECT_EQ(window->visibility(), QWindow::FullScreen);
    press(Qt::Key_Escape);
    EXPECT_EQ(window->visibility(), former);
    EXPECT_TRUE(appState.isPlaying());
    press(Qt::Key_F);
    player().close();
    drainEvents();
    EXPECT_EQ(window->visibility(), former);
}

TEST_F(PlayerWindowTest, WhatTheWindowWasIsKnownWhoeverEndsTheFullScreen) {
    playFilm();
    window->showMaximized();
    settle();
    press(Qt::Key_F);
    ASSERT_EQ(window->visibility(), QWindow::FullScreen);
    press(Qt::Key_F11);
    EXPECT_EQ(window->visibility(), QWindow::Maximized) << "begun by the player, ended by the viewer";
    press(Qt::Key_F11);
    ASSERT_EQ(window->visibility(), QWindow::FullScreen);
    press(Qt::Key_F);
    EXPECT_EQ(window->visibility(), QWindow::Maximized) << "begun by the viewer, ended by the player";
    press(Qt::Key_F);
    press(Qt::Key_F11);
    press(Qt::Key_F11);
    player().close();
    drainEvents();
    EXPECT_EQ(window->visibility(), QWindow::FullScreen) << "the viewer's own";
    press(Qt::Key_F11);
    EXPECT_EQ(window->visibility(), QWindow::Maximized);
}

TEST_F(PlayerWindowTest, TheErrorLayerOffersAnotherTry) {
    playFilm();
    const auto creations = [this] { return std::ranges::count(journal, "create http://tv.example/movie/1"); };
    playerManager.setError("Erro de reproducao");
    settle();
    EXPECT_NE(find(QStringLiteral("Erro de reproducao")), nullptr);
    EXPECT_EQ(focusName(), "Tentar novamente");
    scheduler.advance(6);
    settle();
    EXPECT_NE(find(QStringLiteral("Tentar novamente")), nullptr) << "it does not go with the controls";
    click("Tentar novamente");
    EXPECT_EQ(creations(), 2);
    settle();
    EXPECT_EQ(find(QStringLiteral("Tentar novamente")), nullptr);
    EXPECT_NE(find(QStringLiteral("A preparar reproducao...")), nullptr);
}

TEST_F(PlayerWindowTest, SubtitlesOfTheScreensLieOverThePicture) {
    playFilm();
    playerManager.setUseCustomSubtitleOverlay(true);
    playerManager.setCurrentSubtitleTrack(SubtitleTrack{
        "srt-1", std::nullopt, "Português", "", std::vector<SubtitleCue>{{90, 120, "Uma linha\nOutra"}}});
    scheduler.advance(0.1);
    settle();
    QQuickItem* block = named("subtitleBlock");
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block->mapToScene(QPointF(0, block->height())).y(), window->height() - 60);
    EXPECT_EQ(block->mapToScene(QPointF(block->width() / 2, 0)).x(), window->width() / 2.0);
    EXPECT_EQ(block->property("color").value<QColor>(), QColor::fromRgbF(0, 0, 0, 0.55F));
    QQuickItem* line = block->childItems().at(0);
    const QFont font = line->property("font").value<QFont>();
    EXPECT_EQ(font.pixelSize(), 18);
    EXPECT_EQ(font.weight(), QFont::DemiBold);
    EXPECT_EQ(line->property("color").value<QColor>(), QColor(Qt::white));
    EXPECT_EQ(line->property("lineCount"), 2);
    EXPECT_EQ(block->size(), line->size() + QSizeF(28, 12)) << "14 at the sides, 6 above and below";
    reach(500, 1000);
    scheduler.advance(0.1);
    EXPECT_EQ(named("subtitleBlock"), nullptr);
}

TEST_F(PlayerWindowTest, SubtitlesOfTheScreensWrapAndLetTouchesThrough) {
    playFilm();
    playerManager.setUseCustomSubtitleOverlay(true);
    std::string longLine;
    while (longLine.size() < 400) {
        longLine += "Uma linha muito comprida ";
    }
    playerManager.setCurrentSubtitleTrack(
        SubtitleTrack{"srt-1", std::nullopt, "Português", "", std::vector<SubtitleCue>{{90, 120, longLine}}});
    scheduler.advance(5.1);
    settle();
    ASSERT_FALSE(player().controls()->showControls());
    QQuickItem* block = named("subtitleBlock");
    ASSERT_NE(block, nullptr);
    EXPECT_LE(block->width(), window->width());
    EXPECT_GT(block->childItems().at(0)->property("lineCount").toInt(), 1);
    const QPoint place(1100, block->mapToScene(QPointF(0, block->height() / 2)).toPoint().y());
    ASSERT_TRUE(block->contains(block->mapFromScene(place)));
    doubleClickAt(place);
    EXPECT_EQ(playerManager.currentTime(), 110) << "the picture below was touched";
}

} // namespace
} // namespace ondavia::testing
