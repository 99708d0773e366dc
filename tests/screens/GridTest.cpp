#include "ScreensWindow.h"

namespace ondavia::testing {
namespace {

/// A long list of films in windows of several sizes.
class GridTest : public ScreensTest, public ::testing::WithParamInterface<QSize> {
protected:
    static constexpr int films = 13'000;

    void openFilms(QSize size) {
        std::vector<Channel> rows;
        for (int number = 1; number <= films; ++number) {
            rows.push_back(title(number, "movie", "Drama", "Filme " + std::to_string(number)));
        }
        fill(rows);
        appState.setVodCategories(categoryItems({"Drama"}));
        appState.setSelectedTab(AppTab::movies);
        show(size.width(), size.height());
        click("Drama");
        ASSERT_NE(grid(), nullptr);
        // The frame of the focus is shown from now on.
        press(Qt::Key_Tab);
        press(Qt::Key_Backtab);
        grid()->forceActiveFocus();
        settle();
    }
    QQuickItem* grid() { return findByClass("CardGrid"); }
    QQuickItem* findByClass(const char* name) {
        QQuickItem* found = nullptr;
        collect(*window->contentItem(), [&](QQuickItem& item) {
            const bool isIt = QByteArray(item.metaObject()->className()).startsWith(name);
            found = found == nullptr && isIt ? &item : found;
        });
        return found;
    }
    int current() { return grid()->property("currentIndex").toInt(); }
    double scrolled() { return grid()->property("contentY").toDouble(); }
    /// The focus is on a card that can be seen whole, or as much of it as the window holds.
    void expectFocusInSight(const char* after) {
        settle();
        const QQuickItem* card = window->activeFocusItem();
        ASSERT_NE(card, nullptr) << after;
        EXPECT_TRUE(accessibleName(*card).startsWith(QStringLiteral("Filme "))) << after << focusName();
        const QRectF seen = sceneRect(*card).intersected(sceneRect(*grid()));
        EXPECT_GE(seen.height(), std::min(sceneRect(*card).height(), grid()->height()) - 1) << after;
    }
};

TEST_P(GridTest, AfterTheWheelAnArrowGoesToACardInSight) {
    openFilms(GetParam());
    const double cardHeight = grid()->property("cellHeight").toDouble();
    turnWheel(*grid(), notchDown, [&] { return scrolled() > 2 * cardHeight; });
    const double place = scrolled();
    press(Qt::Key_Down);
    expectFocusInSight("down");
    EXPECT_NEAR(scrolled(), place, grid()->height()) << "the list stays where the wheel has left it";
    const int below = current();
    EXPECT_GT(below, 0);
    turnWheel(*grid(), notchUp, [this] { return grid()->property("atYBeginning").toBool(); });
    press(Qt::Key_Up);
    expectFocusInSight("up");
    EXPECT_LT(current(), below);
}

TEST_P(GridTest, PageKeysHomeAndEndMoveThroughTheList) {
    openFilms(GetParam());
    press(Qt::Key_PageDown);
    expectFocusInSight("page down");
    const int first = current();
    EXPECT_GT(first, 0);
    press(Qt::Key_PageDown);
    expectFocusInSight("page down again");
    EXPECT_EQ(current(), first * 2);
    press(Qt::Key_PageUp);
    EXPECT_EQ(current(), first);
    press(Qt::Key_End);
    expectFocusInSight("end");
    EXPECT_EQ(current(), films - 1);
    press(Qt::Key_Home);
    expectFocusInSight("home");
    EXPECT_EQ(current(), 0);
}

TEST_P(GridTest, ScrollBarCanBeSeenAndHeld) {
    openFilms(GetParam());
    QQuickItem* bar = findByClass("ScrollBar");
    ASSERT_NE(bar, nullptr);
    auto* handle = bar->property("contentItem").value<QQuickItem*>();
    EXPECT_GE(handle->height(), 40) << "in a list of 13,000 titles";
    EXPECT_EQ(handle->opacity(), 1) << "before anybody has scrolled";
    const QRectF area = sceneRect(*bar);
    EXPECT_GE(area.width(), 12);
    EXPECT_LE(area.right(), window->width());
    const QPoint hold = sceneRect(*handle).center().toPoint();
    QTest::mouseMove(window, hold);
    settle();
    EXPECT_GE(sceneRect(*handle->childItems().first()).width(), 10) << "under the pointer";
    QTest::mousePress(window, Qt::LeftButton, {}, hold);
    QTest::mouseMove(window, hold + QPoint(0, 40));
    QTest::mouseMove(window, hold + QPoint(0, 80));
    QTest::mouseRelease(window, Qt::LeftButton, {}, hold + QPoint(0, 80));
    drainEvents();
    EXPECT_GT(scrolled(), 10 * grid()->height());
    EXPECT_FALSE(appState.isPlaying()) << "no card below it took the click";
}

INSTANTIATE_TEST_SUITE_P(Sizes, GridTest,
                         ::testing::Values(QSize(1280, 800), QSize(412, 892), QSize(360, 640),
                                           QSize(1000, 480)));

class WideGridTest : public GridTest {};

TEST_P(WideGridTest, LeftInTheFirstColumnGoesToTheRailAndRightComesBack) {
    openFilms(GetParam());
    press(Qt::Key_Down);
    const int second = current();
    ASSERT_GT(second, 1) << "a card of the second row";
    press(Qt::Key_Right);
    EXPECT_EQ(current(), second + 1);
    press(Qt::Key_Left);
    EXPECT_EQ(current(), second);
    press(Qt::Key_Left);
    EXPECT_EQ(current(), second) << "not the end of the row above";
    const QQuickItem* item = window->activeFocusItem();
    EXPECT_EQ(item->property("symbol").isValid(), true) << focusName();
    EXPECT_LT(sceneRect(*item).right(), 100) << focusName();
    press(Qt::Key_Right);
    expectFocusInSight("back");
}

TEST_P(WideGridTest, RightFromTheRailGoesToACardInSight) {
    openFilms(GetParam());
    press(Qt::Key_Left);
    turnWheel(*grid(), notchDown, [this] { return scrolled() > 3 * grid()->height(); });
    press(Qt::Key_Right);
    EXPECT_GT(current(), 0);
    expectFocusInSight("right");
}

TEST_P(WideGridTest, TheRailFitsIntoTheWindow) {
    openFilms(GetParam());
    const QQuickItem* last = find(QStringLiteral("Favoritos"));
    ASSERT_NE(last, nullptr);
    EXPECT_LT(sceneRect(*last).bottom(), window->height());
}

TEST_P(WideGridTest, AnArrowThatIsHeldDownGoesOnRowByRow) {
    openFilms(GetParam());
    const int columns = grid()->property("columns").toInt();
    constexpr int rows = 12;
    for (int row = 0; row < rows; ++row) {
        QTest::keyClick(window, Qt::Key_Down);
    }
    EXPECT_EQ(current(), rows * columns) << "though the view comes after";
    expectFocusInSight("down");
}

INSTANTIATE_TEST_SUITE_P(Sizes, WideGridTest, ::testing::Values(QSize(1280, 800), QSize(1000, 480)));

TEST_F(ScreensTest, TheFirstArrowKeyShowsTheFocusAndDoesNoMore) {
    signInWithCatalogue();

    appState.setSelectedTab(AppTab::movies);
    show();
    models->content()->start();
    drainEvents();
    settle();
    const auto rings = [this] {
        int shown = 0;
        collect(*window->contentItem(), [&](QQuickItem& item) {
            shown += QByteArray(item.metaObject()->className()).startsWith("FocusRing");
        });
        return shown;
    };
    EXPECT_EQ(rings(), 0);
    const std::string first = focusName();
    press(Qt::Key_Right);
    EXPECT_EQ(rings(), 1);
    EXPECT_EQ(focusName(), first) << "where the focus is must be seen before it moves";
    press(Qt::Key_Right);
    EXPECT_EQ(rings(), 1);
    EXPECT_NE(focusName(), first);
}

TEST_F(ScreensTest, BackspaceGoesBackToo) {
    signInWithCatalogue();
    show();
    models->content()->start();
    drainEvents();
    click("TV");
    click("Desporto, 23");
    ASSERT_NE(find(QStringLiteral("Desporto HD 1")), nullptr);
    press(Qt::Key_Backspace);
    settle();
    EXPECT_NE(find(QStringLiteral("Desporto, 23")), nullptr);
    press(Qt::Key_Backspace);
    EXPECT_EQ(appState.selectedTab(), AppTab::home);
    appState.playChannel(title(1, "movie", "Drama", "Sal"));
    settle();
    press(Qt::Key_Backspace);
    EXPECT_FALSE(appState.isPlaying());
}

TEST_F(ScreensTest, F11FillsTheScreenOnEveryPageAndGoesBack) {
    signInWithCatalogue();
    show();
    const auto expectToggle = [this](const char* where) {
        press(Qt::Key_F11);
        EXPECT_EQ(window->visibility(), QWindow::FullScreen) << where;
        press(Qt::Key_F11);
        EXPECT_EQ(window->visibility(), QWindow::Windowed) << where;
        settle();
    };
    for (const AppTab tab : allAppTabs) {
        appState.setSelectedTab(tab);
        settle();
        expectToggle("a tab");
    }
    models->signIn()->open();
    settle();
    expectToggle("the sign-in step");
    models->signIn()->close();
    appState.playChannel(title(1, "movie", "Drama", "Sal"));
    settle();
    expectToggle("the player");
    EXPECT_TRUE(appState.isPlaying());
    appState.setIsLoading(true);
    settle();
    expectToggle("the overlay");
}

} // namespace
} // namespace ondavia::testing
