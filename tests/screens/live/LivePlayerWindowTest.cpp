// The live player in the window, under real keys and a real pointer.
#include "LivePlayerWindow.h"

#include <QAccessible>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(LivePlayerWindowTest, ZapsWithTheButtonsOverThePicture) {
    openChannel();
    EXPECT_EQ(onAir(), "Desporto HD 1");
    EXPECT_EQ(find(QStringLiteral("Canal seguinte")), nullptr) << "the first move brings the controls";
    wake();
    click("Canal seguinte");
    EXPECT_EQ(onAir(), "Desporto HD 2");
    run();
    settle();
    click("Canal anterior");
    click("Canal anterior");
    EXPECT_EQ(onAir(), "Desporto HD 23") << "round the category";
    scheduler.advance(5.1);
    settle();
    EXPECT_EQ(find(QStringLiteral("Canal seguinte")), nullptr);
}

TEST_F(LivePlayerWindowTest, ATapOnThePictureBringsTheControlsAndTakesThem) {
    openChannel();
    const QPoint corner = stage().topLeft().toPoint() + QPoint(120, 120);
    tap(corner);
    EXPECT_TRUE(player().controls()->showControls()) << "at once: no second tap is waited for";
    tap(corner);
    EXPECT_FALSE(player().controls()->showControls());
}

TEST_F(LivePlayerWindowTest, ZapsThroughTheListOfACategory) {
    openChannel();
    click("Desporto HD 4");
    EXPECT_EQ(onAir(), "Desporto HD 4");
    EXPECT_THAT(markedChannels(), ElementsAre("Desporto HD 4"));
    EXPECT_NE(find(QStringLiteral("Categoria: Desporto")), nullptr);
    click("Categoria: Desporto");
    EXPECT_EQ(find(QStringLiteral("Desporto HD 5")), nullptr) << "the categories lie over it";
    EXPECT_THAT(tickedCategories(), ElementsAre("Desporto"));
    click("Infantil");
    EXPECT_EQ(player().selectedCategory(), "Infantil");
    EXPECT_EQ(onAir(), "Desporto HD 4") << "looking around changes nothing";
    EXPECT_THAT(markedChannels(), IsEmpty());
    click("Infantil HD 2");
    EXPECT_EQ(onAir(), "Infantil HD 2");
    EXPECT_EQ(appState.currentChannel()->name, "Infantil HD 2");
}

TEST_F(LivePlayerWindowTest, ZapsWithTheKeyboard) {
    openChannel();
    EXPECT_EQ(focusName(), "Desporto HD 1") << "the picture has the focus";
    press(Qt::Key_PageUp);
    EXPECT_EQ(onAir(), "Desporto HD 2");
    pressRemote(Qt::Key_ChannelDown);
    EXPECT_EQ(onAir(), "Desporto HD 1");
    press(Qt::Key_4);
    press(Qt::Key_8);
    settle();
    QQuickItem* badge = find(QStringLiteral("48, Notícias e Atualidade Internacional em Português HD 2"));
    ASSERT_NE(badge, nullptr);
    EXPECT_GE(badge->height(), 90) << "to be read from across the room";
    scheduler.advance(2.1);
    EXPECT_EQ(onAir(), "Notícias e Atualidade Internacional em Português HD 2");
    settle();
    EXPECT_EQ(find(QStringLiteral("48, Notícias e Atualidade Internacional em Português HD 2")), nullptr);
    press(Qt::Key_Backspace);
    EXPECT_EQ(onAir(), "Desporto HD 1");
    press(Qt::Key_3);
    press(Qt::Key_Return);
    EXPECT_EQ(onAir(), "Portugal | Generalistas HD 3") << "Enter does not wait";
}

TEST_F(LivePlayerWindowTest, EnterGoesToTheTypedNumberAlsoFromAControl) {
    openChannel();
    press(Qt::Key_Return);
    ASSERT_EQ(focusName(), "Pausa");
    press(Qt::Key_3);
    press(Qt::Key_Return);
    EXPECT_EQ(onAir(), "Portugal | Generalistas HD 3");
    press(Qt::Key_L);
    press(Qt::Key_4);
    press(Qt::Key_Return);
    EXPECT_EQ(onAir(), "Portugal | Generalistas HD 4") << "nor to the row of the list";
    EXPECT_EQ(std::ranges::count(journal, "pause"), 0);
}

TEST_F(LivePlayerWindowTest, TheKeyboardGoesToTheListAndBack) {
    openChannel();
    press(Qt::Key_Right);
    EXPECT_EQ(focusName(), "Desporto HD 1");
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(focusName(), "Desporto HD 3");
    press(Qt::Key_End);
    press(Qt::Key_PageDown);
    EXPECT_EQ(onAir(), "Desporto HD 1") << "there the page keys mean the list, at its end too";
    press(Qt::Key_Home);
    press(Qt::Key_PageUp);
    EXPECT_EQ(focusName(), "Desporto HD 1");
    EXPECT_EQ(onAir(), "Desporto HD 1");
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_TRUE(systemVolume.asked.empty()) << "nor do the arrows mean the volume";
    press(Qt::Key_Return);
    EXPECT_EQ(onAir(), "Desporto HD 3");
    EXPECT_EQ(focusName(), "Desporto HD 3");
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_EQ(focusName(), "Categoria: Desporto");
    press(Qt::Key_Return);
    settle();
    EXPECT_EQ(focusName(), "Desporto") << "the selected one";
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    settle();
    EXPECT_EQ(player().selectedCategory(), "Notícias e Atualidade Internacional em Português");
    EXPECT_EQ(focusName(), "Notícias e Atualidade Internacional em Português HD 1");
    scheduler.advance(6);
    settle();
    press(Qt::Key_Left);
    EXPECT_EQ(focusName(), "EPG");
    press(Qt::Key_Up);
    EXPECT_EQ(focusName(), "Desporto HD 3") << "the picture";
    EXPECT_TRUE(systemVolume.asked.empty());
    press(Qt::Key_Up);
    EXPECT_EQ(systemVolume.asked.size(), 1U);
}

TEST_F(LivePlayerWindowTest, AfterTheWheelAnArrowGoesToAChannelInSight) {
    openChannel();
    press(Qt::Key_Right);
    ASSERT_EQ(focusName(), "Desporto HD 1");
    QQuickItem& list = *named("zapList");
    const auto scrolled = [&list] { return list.property("contentY").toDouble(); };
    const double row = window->activeFocusItem()->height();
    turnWheel(list, notchDown, [&] { return scrolled() > 3 * row; });
    const double before = scrolled();
    press(Qt::Key_Down);
    settle();
    EXPECT_EQ(scrolled(), before) << "the list stays where the wheel has left it";
    EXPECT_TRUE(sceneRect(list).contains(sceneRect(*window->activeFocusItem()))) << focusName();
    EXPECT_EQ(onAir(), "Desporto HD 1");
}

TEST_F(LivePlayerWindowTest, EnterLeadsToTheControls) {
    openChannel();
    press(Qt::Key_Return);
    EXPECT_EQ(focusName(), "Pausa");
    press(Qt::Key_Right);
    EXPECT_EQ(focusName(), "Canal seguinte");
    press(Qt::Key_Return);
    EXPECT_EQ(onAir(), "Desporto HD 2");
    run();
    scheduler.advance(5.1);
    settle();
    EXPECT_EQ(focusName(), "Desporto HD 2") << "the picture: controls that have gone hold no focus";
}

TEST_F(LivePlayerWindowTest, OpensTheGuideAndPlaysYesterday) {
    openChannel();
    click("EPG");
    EXPECT_TRUE(player().showEPG());
    EXPECT_NE(find(QStringLiteral("LISTA")), nullptr);
    click(player().guide()->dayText().toUtf8().constData());
    ASSERT_TRUE(player().guide()->showDatePicker());
    const QAbstractItemModel& days = *player().guide()->days();
    ASSERT_EQ(days.rowCount(), 4);
    click(days.index(1, 0).data(EPGDayListModel::NameRole).toString().toUtf8().constData());
    EXPECT_FALSE(player().guide()->showDatePicker());
    QQuickItem* program = nullptr;
    collect(*window->contentItem(), [&](QQuickItem& item) {
        program = accessibleName(item).contains(QStringLiteral("A Grande Noite 1")) && program == nullptr
                      ? &item
                      : program;
    });
    ASSERT_NE(program, nullptr);
    click(accessibleName(*program).toUtf8().constData());
    const EPGProgram kept = *store->mainContext().fetchFirst<EPGProgram>(
        {.where = field(&EPGProgram::title) == "A Grande Noite 1"});
    EXPECT_EQ(lastPlayed(),
              appState.makeXtreamClient()->getCatchupURL(player().currentChannel().streamId, kept.start, 90));
    EXPECT_EQ(appState.currentChannel()->name, "Desporto HD 1 — A Grande Noite 1");
    EXPECT_EQ(onAir(), "Desporto HD 1");
    EXPECT_TRUE(player().showEPG());
    click("LISTA");
    EXPECT_FALSE(player().showEPG());
    EXPECT_NE(find(QStringLiteral("Desporto HD 2")), nullptr);
}

TEST_F(LivePlayerWindowTest, GuideAndListHaveAKeyEach) {
    openChannel();
    press(Qt::Key_G);
    settle();
    EXPECT_NE(find(QStringLiteral("Guia de programação")), nullptr);
    EXPECT_TRUE(focusName().find("A Grande Noite 0") != std::string::npos) << focusName();
    press(Qt::Key_L);
    settle();
    EXPECT_EQ(find(QStringLiteral("Guia de programação")), nullptr);
    EXPECT_EQ(focusName(), "Desporto HD 1");
    press(Qt::Key_H);
    EXPECT_TRUE(player().isFavorite());
}

TEST_F(LivePlayerWindowTest, TheHeartIsFilledWhenItIsAFavourite) {
    openChannel();
    wake();
    EXPECT_EQ(symbolOf("Adicionar aos favoritos"), QStringLiteral("heart"));
    click("Adicionar aos favoritos");
    EXPECT_TRUE(player().isFavorite());
    EXPECT_EQ(symbolOf("Remover dos favoritos"), QStringLiteral("heart.fill"));
    click("Remover dos favoritos");
    EXPECT_FALSE(player().isFavorite());
    EXPECT_EQ(symbolOf("Adicionar aos favoritos"), QStringLiteral("heart"));
}

TEST_F(LivePlayerWindowTest, StandsBesideTheListInAWideWindowAndAboveItInANarrowOne) {
    openChannel();
    QQuickItem* list = named("zapList");
    ASSERT_NE(list, nullptr);
    EXPECT_LE(stage().right(), sceneRect(*list).left());
    EXPECT_GT(stage().width(), 800);
    window->resize(412, 892);
    settle();
    EXPECT_EQ(stage().width(), 412);
    EXPECT_EQ(stage().height(), 412.0 * 9 / 16);
    EXPECT_GE(sceneRect(*list).top(), stage().bottom() + 76) << "below the bar";
    window->resize(500, 480);
    settle();
    EXPECT_GE(sceneRect(*list).height(), 90) << "a low window keeps some of the list";
}

TEST_F(LivePlayerWindowTest, EachArrangementHasItsControls) {
    const std::vector<const char*> both{
        "Silenciar", "Adicionar aos favoritos", "Definições", "Canal anterior", "Pausa", "Canal seguinte"};
    openChannel();
    wake();
    for (const char* name : both) {
        EXPECT_NE(find(QString::fromUtf8(name)), nullptr) << name;
    }
    EXPECT_EQ(symbolOf("Minimizar"), QStringLiteral("chevron.left"));
    EXPECT_EQ(find(QStringLiteral("Brilho")), nullptr);
    EXPECT_EQ(find(QStringLiteral("Volume")), nullptr);
    EXPECT_EQ(symbolOf("Ecrã inteiro"), QStringLiteral("arrow.up.left.and.arrow.down.right"));
    click("Ecrã inteiro");
    for (const char* name : both) {
        EXPECT_NE(find(QString::fromUtf8(name)), nullptr) << name;
    }
    EXPECT_NE(find(QStringLiteral("Brilho")), nullptr);
    EXPECT_NE(find(QStringLiteral("Volume")), nullptr);
    EXPECT_EQ(symbolOf("Sair do ecrã inteiro"), QStringLiteral("arrow.down.right.and.arrow.up.left"));
    QQuickItem* heading =
        findLabel(*findType(*window->contentItem(), "LiveControls"), QStringLiteral("Desporto HD 1"));
    ASSERT_NE(heading, nullptr) << "the channel's name heads the controls";
    EXPECT_EQ(roleOf(*heading), QAccessible::Heading);
}

TEST_F(LivePlayerWindowTest, ThePictureAloneFillsTheScreen) {
    openChannel();
    const auto former = window->visibility();
    wake();
    click("Ecrã inteiro");
    EXPECT_EQ(window->visibility(), QWindow::FullScreen);
    EXPECT_EQ(stage().size(), QSizeF(window->size()));
    EXPECT_EQ(named("zapList"), nullptr);
    EXPECT_EQ(find(QStringLiteral("Minimizar")), nullptr);
    EXPECT_NE(find(QStringLiteral("Brilho")), nullptr);
    EXPECT_NE(find(QStringLiteral("Volume")), nullptr);
    press(Qt::Key_PageUp);
    EXPECT_EQ(onAir(), "Desporto HD 2");
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(window->visibility(), former);
    EXPECT_NE(named("zapList"), nullptr);
    EXPECT_TRUE(models->player()->isPresented());
    press(Qt::Key_F);
    EXPECT_EQ(window->visibility(), QWindow::FullScreen);
    player().close();
    drainEvents();
    EXPECT_EQ(window->visibility(), former);
}

TEST_F(LivePlayerWindowTest, ShrinksWhileTheViewerBrowsesAndComesBack) {
    openChannel();
    wake();
    journal.clear();
    click("Minimizar");
    QQuickItem* mini = named("miniPlayer");
    ASSERT_NE(mini, nullptr);
    EXPECT_FALSE(models->player()->isPresented());
    models->content()->setSelectedTab(ContentViewModel::Movies);
    settle();
    const QPoint from = mini->mapToScene(QPointF(40, 60)).toPoint();
    QTest::mousePress(window, Qt::LeftButton, {}, from);
    QTest::mouseMove(window, from + QPoint(-450, -100));
    QTest::mouseMove(window, from + QPoint(-900, -200));
    QTest::mouseRelease(window, Qt::LeftButton, {}, from + QPoint(-900, -200));
    settle();
    EXPECT_LT(mini->mapToScene(QPointF()).x(), 200) << "at the other side";
    QTest::mouseClick(window, Qt::LeftButton, {}, mini->mapToScene(QPointF(40, 60)).toPoint());
    settle();
    ASSERT_TRUE(models->player()->isPresented());
    EXPECT_EQ(onAir(), "Desporto HD 1");
    EXPECT_THAT(journal, IsEmpty()) << "the engine heard nothing of it all";
    press(Qt::Key_Escape);
    settle();
    EXPECT_NE(named("miniPlayer"), nullptr) << "the way back does as the chevron does";
    click("Fechar");
    EXPECT_EQ(named("miniPlayer"), nullptr);
    EXPECT_FALSE(appState.isPlaying());
    EXPECT_EQ(std::ranges::count_if(journal, [](const auto& line) { return line.starts_with("shutdown "); }),
              1);
}

TEST_F(LivePlayerWindowTest, AChannelThatFailsHoldsNothingUp) {
    openChannel();
    playerManager.setIsPlaying(false);
    playerManager.setError("Erro de reproducao");
    settle();
    EXPECT_EQ(focusName(), "Tentar novamente");
    click("Tentar novamente");
    EXPECT_EQ(std::ranges::count(journal, "create " + player().currentChannel().url), 2);
    playerManager.setError("Erro de reproducao");
    settle();
    click("Desporto HD 3");
    EXPECT_EQ(onAir(), "Desporto HD 3");
    EXPECT_EQ(find(QStringLiteral("Tentar novamente")), nullptr);
    EXPECT_NE(find(QStringLiteral("A preparar reproducao...")), nullptr);
}

TEST_F(LivePlayerWindowTest, ANarrowPictureThatFailedCanBeZappedAwayFromByTouch) {
    openChannel(412, 892);
    playerManager.setIsPlaying(false);
    playerManager.setError("Erro de reproducao");
    player().controls()->wake();
    settle();
    expectRoomForTheMessage();
    click("Canal seguinte");
    EXPECT_EQ(onAir(), "Desporto HD 2");
    playerManager.setError("Erro de reproducao");
    settle();
    click("Canal anterior");
    EXPECT_EQ(onAir(), "Desporto HD 1");
}

TEST_F(LivePlayerWindowTest, ListsItsOwnKeys) {
    openChannel();
    press(Qt::Key_Question);
    settle();
    EXPECT_NE(find(QStringLiteral("Page Up: Canal seguinte")), nullptr);
    EXPECT_NE(find(QStringLiteral("Retrocesso: Voltar ao canal de antes")), nullptr);
    EXPECT_EQ(find(QStringLiteral("←, J: Recuar")), nullptr);
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(find(QStringLiteral("Page Up: Canal seguinte")), nullptr);
    EXPECT_TRUE(models->player()->isPresented());
}

} // namespace
} // namespace ondavia::testing
