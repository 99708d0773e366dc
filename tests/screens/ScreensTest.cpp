#include "ScreensWindow.h"

#include <QPalette>

namespace ondavia::testing {
namespace {

TEST_F(ScreensTest, LoadWithoutAWarning) {
    show();
    EXPECT_THAT(messages, ::testing::IsEmpty());
    for (const AppTab tab : allAppTabs) {
        appState.setSelectedTab(tab);
        settle();
    }
    window->resize(412, 892);
    settle();
    models->signIn()->open();
    settle();
    EXPECT_THAT(messages, ::testing::IsEmpty());
}

TEST_F(ScreensTest, WritingTheSelectedTabSelectsItAndTheOthersKeepTheirPages) {
    signInWithCatalogue();
    show();
    click("TV");
    EXPECT_EQ(appState.selectedTab(), AppTab::live) << "a click is written back";
    click("Desporto, 23");
    ASSERT_NE(find(QStringLiteral("Desporto HD 1")), nullptr);
    appState.setSelectedTab(AppTab::movies);
    settle();
    EXPECT_NE(find(QStringLiteral("Estreias")), nullptr);
    EXPECT_EQ(find(QStringLiteral("Desporto HD 1")), nullptr);
    appState.setSelectedTab(AppTab::live);
    settle();
    EXPECT_NE(find(QStringLiteral("Desporto HD 1")), nullptr) << "the page opened there is still on top";
    shoot("live-category");
    press(Qt::Key_Escape);
    settle();
    EXPECT_NE(find(QStringLiteral("Desporto, 23")), nullptr);
}

TEST_F(ScreensTest, TabsStandInTheirOrderAtTheLeftOrBelow) {
    show();
    const auto place = [this](const char* name) {
        return find(QString::fromUtf8(name))->mapToScene(QPointF());
    };
    const std::vector<const char*> order{"Inicio", "TV", "Filmes", "Series", "Favoritos"};
    for (std::size_t index = 1; index < order.size(); ++index) {
        EXPECT_GT(place(order[index]).y(), place(order[index - 1]).y());
        EXPECT_EQ(place(order[index]).x(), 0);
    }
    window->resize(412, 892);
    settle();
    for (std::size_t index = 1; index < order.size(); ++index) {
        EXPECT_GT(place(order[index]).x(), place(order[index - 1]).x());
        EXPECT_GE(place(order[index]).y(), 800);
    }
}

TEST_F(ScreensTest, InterfaceIsDarkUnderALightPalette) {
    QGuiApplication::setPalette(QPalette(Qt::white));
    show();
    EXPECT_LT(window->color().lightness(), 30);
    const QImage shown = window->grabWindow();
    EXPECT_LT(shown.pixelColor(shown.width() - 5, 5).lightness(), 60);
    QGuiApplication::setPalette(QPalette());
}

TEST_F(ScreensTest, TextsComeInTheChosenLanguage) {
    show(1280, 800, "en");
    EXPECT_NE(find(QStringLiteral("Add provider")), nullptr);
    EXPECT_EQ(find(QStringLiteral("Adicionar provedor")), nullptr);
}

TEST_F(ScreensTest, AListOfManyTitlesMakesOnlyTheRowsInSight) {
    std::vector<Channel> rows;
    for (int number = 1; number <= 20'000; ++number) {
        rows.push_back(title(number, "movie", "Drama", "Filme " + std::to_string(number)));
    }
    fill(rows);
    appState.setVodCategories(categoryItems({"Drama"}));
    appState.setSelectedTab(AppTab::movies);
    show();
    click("Drama");
    ASSERT_EQ(models->movies()->titles()->rowCount(), 20'000);
    int cards = 0;
    collect(*window->contentItem(),
            [&](QQuickItem& item) { cards += accessibleName(item).startsWith(QStringLiteral("Filme ")); });
    EXPECT_GT(cards, 5);
    EXPECT_LT(cards, 150);
    // Those beyond the view come once the first frame is out, for the scrolling that follows.
    QQuickItem* grid = nullptr;
    collect(*window->contentItem(), [&](QQuickItem& item) {
        grid = item.objectName() == QStringLiteral("movieGrid") ? &item : grid;
    });
    ASSERT_NE(grid, nullptr);
    EXPECT_TRUE(waitUntil([grid] { return grid->property("cacheBuffer").toReal() >= grid->height(); }));
}

} // namespace
} // namespace ondavia::testing
