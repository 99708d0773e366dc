#include "ScreensWindow.h"

#include <QAccessible>

namespace ondavia::testing {
namespace {

/// What an assistive program says of a control. Qt gives it no name of a password field, but its
/// description.
QString spokenName(QQuickItem& item) {
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&item);
    if (interface == nullptr) {
        return {};
    }
    return interface->text(interface->state().passwordEdit ? QAccessible::Description : QAccessible::Name);
}

/// Everything that takes a key or a click has a name, in what is on screen now.
void expectNames(const QQuickWindow& window, const std::string& where) {
    int controls = 0;
    collect(*window.contentItem(), [&](QQuickItem& item) {
        const bool isControl = item.activeFocusOnTab() || item.inherits("QQuickAbstractButton") ||
                               item.inherits("QQuickTextInput") || item.inherits("QQuickSlider");
        const bool isList = item.inherits("QQuickItemView");
        if (isControl && !isList) {
            ++controls;
            EXPECT_FALSE(spokenName(item).isEmpty())
                << where << ": a " << item.metaObject()->className() << " without a name at "
                << item.mapToScene(QPointF()).x() << ", " << item.mapToScene(QPointF()).y();
        }
    });
    EXPECT_GT(controls, 0) << where;
}

TEST_F(ScreensTest, EveryControlHasAName) {
    signInWithCatalogue();
    show();
    for (const AppTab tab : allAppTabs) {
        appState.setSelectedTab(tab);
        settle();
        expectNames(*window, "tab " + std::to_string(static_cast<int>(tab)));
    }
    appState.setSelectedTab(AppTab::live);
    settle();
    click("Desporto, 23");
    expectNames(*window, "live category");
    for (const char* type : {"movie", "series"}) {
        models->details()->open(title(1, type, "Drama", "Sal"));
        settle();
        expectNames(*window, type);
    }
    models->signIn()->open();
    settle();
    expectNames(*window, "sign-in");
    models->signIn()->close();
    appState.playChannel(title(1, "movie", "Drama", "Sal"));
    settle();
    expectNames(*window, "player");
}

TEST_F(ScreensTest, KeyboardAloneReachesAChannelAndComesBack) {
    signInWithCatalogue();
    show();
    const auto walkTo = [this](const std::string& name, Qt::Key key) {
        for (int step = 0; step < 12 && focusName() != name; ++step) {
            press(key);
        }
        return focusName() == name;
    };
    EXPECT_TRUE(walkTo("TV", Qt::Key_Tab)) << focusName();
    press(Qt::Key_Return);
    settle();
    EXPECT_EQ(appState.selectedTab(), AppTab::live);
    press(Qt::Key_Right);
    EXPECT_EQ(focusName(), "Portugal | Generalistas, 23");
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    settle();
    EXPECT_EQ(focusName(), "Infantil HD 1") << "the category below the first opened";
    press(Qt::Key_Return);
    settle();
    ASSERT_TRUE(appState.isPlaying());
    EXPECT_EQ(focusName(), "Infantil HD 1") << "the picture, whose keys steer it";
    press(Qt::Key_Escape);
    EXPECT_TRUE(appState.showMiniPlayer()) << "a channel goes on in a corner";
    settle();
    press(Qt::Key_Escape);
    settle();
    EXPECT_NE(find(QStringLiteral("Desporto, 23")), nullptr);
    press(Qt::Key_Left);
    EXPECT_TRUE(focusName() == "TV" || walkTo("TV", Qt::Key_Down)) << focusName();
}

TEST_F(ScreensTest, SignInIsReachedByKeyboardAndLeftWithEscape) {
    show();
    ASSERT_EQ(focusName(), "Adicionar provedor") << "the first key should do what a newcomer wants";
    press(Qt::Key_Return);
    settle();
    EXPECT_EQ(focusName(), "Servidor");
    for (const char letter : std::string("tv.example:80")) {
        QTest::keyClick(window, letter);
    }
    EXPECT_EQ(models->signIn()->server(), QStringLiteral("tv.example:80"));
    EXPECT_NE(find(QStringLiteral("Acrescentar http://")), nullptr);
    press(Qt::Key_Escape);
    settle();
    EXPECT_FALSE(models->signIn()->isOpen());
    EXPECT_EQ(find(QStringLiteral("Servidor")), nullptr);
}

TEST_F(ScreensTest, OverlayTakesEveryKeyWhileItIsUp) {
    show();
    appState.setLoadingMessage("A carregar conteudo...");
    appState.setIsLoading(true);
    settle();
    EXPECT_NE(find(QStringLiteral("A carregar conteudo...")), nullptr);
    shoot("loading");
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    EXPECT_FALSE(models->signIn()->isOpen());
    EXPECT_EQ(appState.selectedTab(), AppTab::home);
    appState.setIsLoading(false);
    settle();
    EXPECT_EQ(find(QStringLiteral("A carregar conteudo...")), nullptr);
}

TEST_F(ScreensTest, GoingBackFromATabsFirstPageLeadsHomeAndThenAsksBeforeItLeaves) {
    signInWithCatalogue();
    show();
    appState.setSelectedTab(AppTab::series);
    settle();
    press(Qt::Key_Escape);
    EXPECT_EQ(appState.selectedTab(), AppTab::home);
    settle();
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(focusName(), "Ficar") << "a key pressed once too often must not end the application";
    expectNames(*window, "dialog");
    shoot("dialog");
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(find(QStringLiteral("Ficar")), nullptr);
    press(Qt::Key_Escape);
    settle();
    press(Qt::Key_Right);
    EXPECT_EQ(focusName(), "Sair");
    press(Qt::Key_Return);
    EXPECT_FALSE(window->isVisible());
}

} // namespace
} // namespace ondavia::testing
