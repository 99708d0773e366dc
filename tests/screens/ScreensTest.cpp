#include "Posters.h"
#include "ScreensFixture.h"
#include "screens/shell/ScreenModels.h"
#include "screens/texts/Texts.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QPalette>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gmock/gmock.h>

namespace ondavia::testing {
namespace {

void collect(QQuickItem& item, const std::function<void(QQuickItem&)>& visit) {
    if (item.isVisible()) {
        visit(item);
        for (QQuickItem* child : item.childItems()) {
            collect(*child, visit);
        }
    }
}

QString accessibleName(const QObject& item) {
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(const_cast<QObject*>(&item));
    return interface != nullptr ? interface->text(QAccessible::Name) : QString();
}

/// What an assistive program says of a control. Qt gives it no name of a password field, but its
/// description.
QString spokenName(QQuickItem& item) {
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&item);
    if (interface == nullptr) {
        return {};
    }
    return interface->text(interface->state().passwordEdit ? QAccessible::Description : QAccessible::Name);
}

/// The whole interface in a window, under whatever display there is. With ONDAVIA_SHOTS set to a folder,
/// `shoot` leaves a picture there.
class ScreensTest : public ScreensFixture {
protected:
    ~ScreensTest() override {
        installMessages(nullptr);
        installTextCatalogue({});
    }

    void TearDown() override { EXPECT_THAT(messages, ::testing::IsEmpty()); }

    void show(int width = 1280, int height = 800, const std::string& language = "pt") {
        messages.clear();
        installMessages(&messages);
        engine = std::make_unique<QQmlApplicationEngine>();
        loadScreens(*engine, services(language));
        if (engine->rootObjects().isEmpty()) {
            throw std::runtime_error(::testing::PrintToString(messages));
        }
        window = qobject_cast<QQuickWindow*>(engine->rootObjects().first());
        window->resize(width, height);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
        window->requestActivate();
        models = window->property("models").value<ScreenModels*>();
        drainEvents();
        settle();
    }
    /// Lets every movement of the interface end.
    void settle() {
        QElapsedTimer time;
        time.start();
        waitUntil([&] { return time.elapsed() > 400; });
    }
    void shoot(const std::string& name) {
        const QString shots = qEnvironmentVariable("ONDAVIA_SHOTS");
        if (!shots.isEmpty()) {
            settle();
            const QString suffix =
                window->width() < 900 ? QStringLiteral("-narrow") : QStringLiteral("-wide");
            EXPECT_TRUE(window->grabWindow().save(shots + QLatin1Char('/') + QString::fromStdString(name) +
                                                  suffix + QStringLiteral(".png")));
        }
    }
    void press(Qt::Key key) {
        QTest::keyClick(window, key);
        drainEvents();
    }
    [[nodiscard]] QQuickItem* find(const QString& accessible) {
        QQuickItem* found = nullptr;
        collect(*window->contentItem(), [&](QQuickItem& item) {
            if (found == nullptr && item.isEnabled() && accessibleName(item) == accessible) {
                found = &item;
            }
        });
        return found;
    }
    void click(const char* accessible) {
        QQuickItem* item = find(QString::fromUtf8(accessible));
        ASSERT_NE(item, nullptr) << accessible;
        QTest::mouseClick(window, Qt::LeftButton, {},
                          item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
        drainEvents();
        settle();
    }
    [[nodiscard]] std::string focusName() const {
        const QQuickItem* item = window->activeFocusItem();
        return item != nullptr ? accessibleName(*item).toStdString() : std::string();
    }
    /// Everything that takes a key or a click has a name, in what is on screen now.
    void expectNames(const char* where) {
        int controls = 0;
        collect(*window->contentItem(), [&](QQuickItem& item) {
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
    void signInWithCatalogue();

    static void installMessages(std::vector<std::string>* list);

    std::vector<std::string> messages;
    Posters posters;
    ScreenModels* models = nullptr;
    QQuickWindow* window = nullptr;
    std::unique_ptr<QQmlApplicationEngine> engine;
};

std::vector<std::string>* collectedMessages = nullptr;

void collectMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type != QtDebugMsg) {
        collectedMessages->push_back(text.toStdString());
    }
}

void ScreensTest::installMessages(std::vector<std::string>* list) {
    collectedMessages = list;
    qInstallMessageHandler(list == nullptr ? nullptr : collectMessage);
}

void ScreensTest::signInWithCatalogue() {
    const std::vector<std::string> live{"Portugal | Generalistas",
                                        "Desporto",
                                        "Notícias e Atualidade Internacional em Português",
                                        "Infantil",
                                        "Documentários",
                                        "Música",
                                        "Cinema e Séries",
                                        "Regionais e Ilhas Atlânticas"};
    const std::vector<std::string> films{"Estreias",
                                         "Drama",
                                         "Comédia",
                                         "Animação e Família",
                                         "Ficção Científica",
                                         "Thriller e Mistério",
                                         "Clássicos do Cinema Português"};
    std::vector<Channel> rows;
    std::int64_t number = 0;
    for (const auto& group : live) {
        for (int index = 1; index <= 23 && group != "Música"; ++index) {
            ++number;
            Channel channel = title(number, "live", group, group + " HD " + std::to_string(index));
            channel.logo = index % 4 == 0 ? std::optional<std::string>() : posters.logo(number);
            rows.push_back(std::move(channel));
        }
    }
    const std::vector<std::string> names{"A Última Maré",
                                         "O Faroleiro da Ilha de São Jorge e Outras Histórias de Mar",
                                         "Noite em Branco",
                                         "Linha 28",
                                         "Sal",
                                         "O Inverno dos Pássaros",
                                         "Ponte Levadiça"};
    for (const auto& group : films) {
        for (int index = 1; index <= 40; ++index) {
            ++number;
            Channel channel =
                title(number, "movie", group, names[static_cast<std::size_t>(number) % names.size()]);
            channel.logo = index % 6 == 0 ? std::optional<std::string>() : posters.poster(number);
            channel.rating =
                index % 3 == 0 ? "0" : std::to_string(5 + index % 5) + "." + std::to_string(index % 10);
            rows.push_back(std::move(channel));
        }
    }
    fill(rows);
    appState.setServer("http://tv.example");
    appState.setUsername("ana");
    appState.setHasCredentials(true);
    defaults.setStringArray("ondavia_live_cat_order", live);
    defaults.setStringArray("ondavia_vod_cat_order", films);
    defaults.setDate("ondavia_last_sync", currentDate());
}

TEST_F(ScreensTest, LoadWithoutAWarning) {
    show();
    EXPECT_THAT(messages, ::testing::IsEmpty());
    for (int tab = 0; tab < 5; ++tab) {
        models->content()->setSelectedTab(tab);
        settle();
    }
    window->resize(412, 892);
    settle();
    models->signIn()->open();
    settle();
    EXPECT_THAT(messages, ::testing::IsEmpty());
}

TEST_F(ScreensTest, EveryControlHasAName) {
    signInWithCatalogue();
    show();
    for (const char* tab : {"home", "live", "movies", "series", "favorites"}) {
        expectNames(tab);
        models->content()->setSelectedTab(models->content()->selectedTab() + 1);
        settle();
    }
    models->content()->setSelectedTab(1);
    settle();
    click("Desporto, 23");
    expectNames("live category");
    models->signIn()->open();
    settle();
    expectNames("sign-in");
    models->signIn()->close();
    appState.playChannel(title(1, "movie", "Drama", "Sal"));
    settle();
    expectNames("player");
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
    EXPECT_EQ(focusName(), "Reproduzir");
    press(Qt::Key_Escape);
    EXPECT_FALSE(appState.isPlaying());
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
    shoot("loading");
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    EXPECT_FALSE(models->signIn()->isOpen());
    EXPECT_EQ(appState.selectedTab(), AppTab::home);
    appState.setIsLoading(false);
    settle();
    EXPECT_EQ(find(QStringLiteral("A carregar conteudo...")), nullptr);
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
    ASSERT_EQ(models->movies()->titles()->rowCount(), 20'000);
    int cards = 0;
    collect(*window->contentItem(),
            [&](QQuickItem& item) { cards += accessibleName(item).startsWith(QStringLiteral("Filme ")); });
    EXPECT_GT(cards, 5);
    EXPECT_LT(cards, 150);
}

class LookTest : public ScreensTest, public ::testing::WithParamInterface<QSize> {};

/// Walks through every screen in every state; the pictures are for the eye, the absence of warnings for
/// the machine.
TEST_P(LookTest, DrawsWithoutAWarning) {
    const QSize size = GetParam();
    show(size.width(), size.height());
    shoot("home-welcome");
    models->signIn()->open();
    shoot("signin-empty");
    models->signIn()->setServer(QStringLiteral("tv.exemplo-com-um-nome-muito-comprido.example.pt:8080"));
    models->signIn()->setUsername(QStringLiteral("ana.marques"));
    models->signIn()->setPassword(QStringLiteral("segredo"));
    models->signIn()->test();
    ASSERT_TRUE(waitUntil([this] { return !models->signIn()->isChecking(); }));
    QTest::keyClick(window, Qt::Key_Tab);
    shoot("signin-error");
    models->signIn()->close();
    appState.setSelectedTab(AppTab::live);
    shoot("live-empty");
    appState.setSelectedTab(AppTab::favorites);
    shoot("favorites");

    signInWithCatalogue();
    models->content()->start();
    drainEvents();
    appState.setSelectedTab(AppTab::home);
    appState.showToast("Sem internet — a usar dados em cache", ToastType::warning);
    shoot("home");
    appState.showToast("Erro ao carregar conteúdo. Verifica a tua ligação.", ToastType::error);
    appState.setSelectedTab(AppTab::live);
    shoot("live");
    appState.setToastMessage(std::nullopt);
    models->live()->openCategory(2);
    click("Notícias e Atualidade Internacional em Português, 23");
    shoot("live-category");
    appState.setSelectedTab(AppTab::movies);
    settle();
    ASSERT_TRUE(waitUntil([this] { return posters.served() > 8; }));
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    shoot("movies");
    appState.playChannel(
        title(9001, "movie", "Drama", "O Faroleiro da Ilha de São Jorge e Outras Histórias de Mar"));
    playerManager.setDuration(6300);
    playerManager.setCurrentTime(1875);
    playerManager.setIsBuffering(true);
    shoot("player-buffering");
    playerManager.setIsBuffering(false);
    playerManager.setError("Erro de reproducao");
    shoot("player-error");
    EXPECT_THAT(messages, ::testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Sizes, LookTest, ::testing::Values(QSize(1280, 800), QSize(412, 892)));

} // namespace
} // namespace ondavia::testing
