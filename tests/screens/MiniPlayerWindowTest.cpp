// The mini player in the window, under real keys and a real pointer.
#include "PlayerWindow.h"

namespace ondavia::testing {
namespace {

class MiniPlayerWindowTest : public PlayerWindowTest {
protected:
    void minimise() {
        playFilm();
        player().minimizeToMini();
        settle();
    }
    [[nodiscard]] QQuickItem& miniPlayer() { return *named("miniPlayer"); }
    void expectButton(const char* name, const char* symbol, double size) {
        const QQuickItem* button = findBelow(miniPlayer(), [name](const QQuickItem& item) {
            return accessibleName(item) == QString::fromUtf8(name);
        });
        ASSERT_NE(button, nullptr) << name;
        EXPECT_EQ(button->property("symbol").toString(), QLatin1String(symbol));
        EXPECT_EQ(button->size(), QSizeF(size, size)) << name;
    }
};

TEST_F(MiniPlayerWindowTest, ShrinksIntoTheMiniPlayerAndComesBack) {
    playFilm();
    journal.clear();
    click("Minimizar");
    settle();
    QQuickItem* mini = named("miniPlayer");
    ASSERT_NE(mini, nullptr);
    EXPECT_EQ(mini->mapToScene(QPointF()), QPointF(1280 - 192, 800 - 202));
    EXPECT_NE(find(QStringLiteral("Inicio")), nullptr) << "the pages are there again";
    const auto middle = [&] { return mini->mapToScene(QPointF(40, 60)).toPoint(); };
    const auto moveBy = [&](QPoint way) {
        const QPoint from = middle();
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        QTest::mouseMove(window, from + way / 2);
        QTest::mouseMove(window, from + way);
        QTest::mouseRelease(window, Qt::LeftButton, {}, from + way);
        settle();
    };
    moveBy({-900, -200});
    EXPECT_EQ(mini->mapToScene(QPointF()), QPointF(96 + 12, 800 - 202 - 200)) << "beside the rail";
    window->resize(1000, 500);
    settle();
    EXPECT_EQ(mini->mapToScene(QPointF()), QPointF(96 + 12, 500 - 155 - 55));
    EXPECT_THAT(journal, ::testing::IsEmpty());
    moveBy({6, 8});
    EXPECT_FALSE(models->player()->isPresented()) << "ten is a drag";
    moveBy({7, 7});
    EXPECT_TRUE(models->player()->isPresented()) << "less than ten is a tap";
    EXPECT_EQ(named("miniPlayer"), nullptr);
    EXPECT_THAT(journal, ::testing::IsEmpty()) << "the engine heard nothing of it all";
    click("Minimizar");
    settle();
    click("Silenciar");
    EXPECT_TRUE(playerManager.isMuted());
    click("Fechar");
    settle();
    EXPECT_EQ(named("miniPlayer"), nullptr);
    EXPECT_FALSE(appState.isPlaying());
}

TEST_F(MiniPlayerWindowTest, HoldsTheNameAndThreeButtons) {
    minimise();
    EXPECT_EQ(miniPlayer().size(), QSizeF(180, 110));
    EXPECT_NE(findLabel(miniPlayer(), QStringLiteral("Uma Longa Noite")), nullptr);
    expectButton("Fechar", "xmark", 24);
    expectButton("Pausa", "pause.fill", 28);
    expectButton("Silenciar", "speaker.wave.2.fill", 28);
    click("Pausa");
    EXPECT_FALSE(playerManager.isPlaying());
    expectButton("Reproduzir", "play.fill", 28);
    click("Reproduzir");
    EXPECT_TRUE(playerManager.isPlaying());
    click("Silenciar");
    EXPECT_TRUE(playerManager.isMuted());
    expectButton("Ligar o som", "speaker.slash.fill", 28);
    EXPECT_TRUE(appState.showMiniPlayer()) << "none of them expands it";
}

TEST_F(MiniPlayerWindowTest, SaysThatItWaits) {
    minimise();
    EXPECT_EQ(findType(miniPlayer(), "Spinner"), nullptr);
    playerManager.setIsPlaying(false);
    playerManager.setIsBuffering(true);
    drainEvents();
    const QQuickItem* spinner = findType(miniPlayer(), "Spinner");
    ASSERT_NE(spinner, nullptr);
    EXPECT_TRUE(spinner->property("running").toBool());
    EXPECT_EQ(spinner->scale(), 0.8);
    playerManager.setIsPlaying(true);
    drainEvents();
    EXPECT_EQ(findType(miniPlayer(), "Spinner"), nullptr);
}

TEST_F(MiniPlayerWindowTest, TheMiniPlayerIsReachedByKeyboard) {
    minimise();
    for (int step = 0; step < 20 && focusName().find("Voltar ao ecrã inteiro") != 0; ++step) {
        press(Qt::Key_Tab);
    }
    EXPECT_EQ(focusName(), "Voltar ao ecrã inteiro, Uma Longa Noite");
    press(Qt::Key_Return);
    settle();
    EXPECT_TRUE(models->player()->isPresented());
}

TEST_F(MiniPlayerWindowTest, ThePagesHaveTheFocusAgainWhenTheMiniPlayerHasGone) {
    minimise();
    const std::string before = focusName();
    EXPECT_NE(before, "");
    for (int step = 0; step < 20 && focusName() != "Fechar"; ++step) {
        press(Qt::Key_Tab);
    }
    ASSERT_EQ(focusName(), "Fechar");
    press(Qt::Key_Return);
    settle();
    EXPECT_FALSE(appState.isPlaying());
    EXPECT_EQ(focusName(), before);
}

} // namespace
} // namespace ondavia::testing
