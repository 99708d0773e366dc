// From a card to what plays, and back to the card: by keys alone, and by touch alone.
#include "DetailWindow.h"

namespace ondavia::testing {
namespace {

class DetailWalkTest : public DetailWindow, public ::testing::WithParamInterface<QSize> {
protected:
    void openTouched() { open(GetParam().width(), GetParam().height()); }
    void tap(const std::string& accessible) {
        const QQuickItem* item = find(QString::fromStdString(accessible));
        ASSERT_NE(item, nullptr) << accessible;
        const QPoint middle = item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
        ASSERT_TRUE(QRect(QPoint(), window->size()).contains(middle)) << accessible;
        QTest::touchEvent(window, m_screen.get()).press(0, middle, window);
        QTest::touchEvent(window, m_screen.get()).release(0, middle, window);
        drainEvents();
        settle();
    }
    /// A finger moves the page.
    void drag(int distance) {
        const QPoint middle(window->width() / 2, window->height() / 2);
        constexpr int steps = 10;
        QTest::touchEvent(window, m_screen.get()).press(0, middle, window);
        for (int step = 1; step <= steps; ++step) {
            QTest::touchEvent(window, m_screen.get())
                .move(0, middle + QPoint(0, distance * step / steps), window);
            drainEvents();
        }
        QTest::touchEvent(window, m_screen.get()).release(0, middle + QPoint(0, distance), window);
        drainEvents();
        settle();
    }
    [[nodiscard]] bool hasCome(const std::string& accessible) {
        return waitUntil([&] { return find(QString::fromStdString(accessible)) != nullptr; });
    }
    void leavePlayer() {
        press(Qt::Key_Escape);
        settle();
        if (appState.isPlaying()) {
            press(Qt::Key_Escape);
            settle();
        }
        ASSERT_FALSE(appState.isPlaying());
    }

private:
    std::unique_ptr<QPointingDevice> m_screen{QTest::createTouchDevice()};
};

TEST_P(DetailWalkTest, KeysLeadFromACardToItsFilmAndBack) {
    openTouched();
    openTab(AppTab::movies);
    walkTo(longName);
    press(Qt::Key_Return);
    settle();
    ASSERT_NE(named("movieDetail"), nullptr);
    EXPECT_EQ(focusName(), "Reproduzir");
    press(Qt::Key_Return);
    settle();
    ASSERT_TRUE(appState.isPlaying());
    EXPECT_EQ(appState.currentChannel()->id, "main_901");
    leavePlayer();
    EXPECT_EQ(focusName(), "Reproduzir");
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(focusName(), longName);
}

TEST_P(DetailWalkTest, KeysLeadFromACardToAnEpisodeAndBack) {
    openTouched();
    openTab(AppTab::series);
    walkTo(longName);
    press(Qt::Key_Return);
    settle();
    ASSERT_TRUE(hasCome("T2"));
    walkTo("Ep. 1, Capítulo 1.1, 00:42:10");
    press(Qt::Key_Return);
    settle();
    ASSERT_TRUE(appState.isPlaying());
    EXPECT_EQ(appState.currentChannel()->id, "main_series_951_ep_1001");
    leavePlayer();
    EXPECT_EQ(focusName(), "Ep. 1, Capítulo 1.1, 00:42:10") << "the row that was left";
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(focusName(), longName);
}

TEST_P(DetailWalkTest, AFingerLeadsFromACardToItsFilmAndBack) {
    openTouched();
    openTab(AppTab::movies);
    tap(longName);
    ASSERT_NE(named("movieDetail"), nullptr);
    tap("Ler mais");
    EXPECT_NE(find(QStringLiteral("Menos")), nullptr);
    tap("Favorito");
    EXPECT_EQ(store->mainContext().count<Favorite>(), 1);
    tap("Reproduzir");
    ASSERT_TRUE(appState.isPlaying());
    EXPECT_EQ(appState.currentChannel()->id, "main_901");
    tap("Fechar");
    ASSERT_FALSE(appState.isPlaying());
    tap("Voltar");
    EXPECT_EQ(named("movieDetail"), nullptr);
    EXPECT_NE(find(QString::fromUtf8(longName)), nullptr);
}

TEST_P(DetailWalkTest, AFingerLeadsToAnEpisodeOfAnotherSeason) {
    openTouched();
    openTab(AppTab::series);
    tap(longName);
    ASSERT_TRUE(hasCome("T2"));
    drag(-300);
    tap("T2");
    EXPECT_FALSE(appState.isPlaying()) << "a drag is no tap";
    tap("Ep. 1, Capítulo 2.1, 00:42:10");
    ASSERT_TRUE(appState.isPlaying());
    EXPECT_EQ(appState.currentChannel()->id, "main_series_951_ep_2001");
    EXPECT_EQ(appState.currentEpisodeIndex(), 2);
}

TEST_P(DetailWalkTest, KeysLeadFromAResultToItsFilmAndBack) {
    openTouched();
    QTest::keyClick(window, '/');
    settle();
    for (const char letter : std::string("vasconcelos")) {
        QTest::keyClick(window, letter);
    }
    scheduler.advance(1);
    ASSERT_TRUE(hasCome("2 resultados"));
    settle();
    const std::string result = std::string(longName) + ", 2015";
    walkTo(result);
    press(Qt::Key_Return);
    settle();
    ASSERT_NE(named("movieDetail"), nullptr);
    press(Qt::Key_Return);
    settle();
    ASSERT_TRUE(appState.isPlaying());
    leavePlayer();
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(focusName(), result);
    EXPECT_NE(find(QStringLiteral("2 resultados")), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Sizes, DetailWalkTest, ::testing::Values(QSize(1280, 800), QSize(412, 892)));

} // namespace
} // namespace ondavia::testing
