#include "ScreensWindow.h"

#include "screens/texts/Texts.h"

namespace ondavia::testing {
namespace {

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

INSTANTIATE_TEST_SUITE_P(Sizes, LookTest,
                         ::testing::Values(QSize(1280, 800), QSize(412, 892), QSize(360, 640),
                                           QSize(3840, 2160)));

} // namespace
} // namespace ondavia::testing
