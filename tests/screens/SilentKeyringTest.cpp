#include "ScreensWindow.h"
#include "support/PrivateBus.h"
#include "support/SilentSecretService.h"

#include <QTimer>

namespace ondavia::testing {
namespace {

struct SilentBus final {
    PrivateBus bus;
    SilentSecretService service;
};

SilentBus& silentBus() {
    static SilentBus all;
    return all;
}

std::unique_ptr<SecItemStore> itemsOfSilentBus() {
    EXPECT_TRUE(silentBus().service.isThere());
    return makeSecItemStore("/nonexistent");
}

/// The whole window before a keyring that takes every question and never answers.
class SilentKeyringTest : public ScreensTest {
protected:
    SilentKeyringTest()
        : ScreensTest(itemsOfSilentBus()) {}

    /// Runs the event loop for so many turns; false when it stands still.
    static bool turn(int turns) {
        int done = 0;
        QTimer everyTurn;
        QObject::connect(&everyTurn, &QTimer::timeout, &everyTurn, [&done] { ++done; });
        everyTurn.start(0);
        return waitUntil([&] { return done >= turns; }, std::chrono::minutes(2));
    }
};

TEST_F(SilentKeyringTest, TheWindowComesUpAndWorksAndSaysThatNothingIsRemembered) {
    show(1280, 800);
    // The service is served by this very thread: it hears of a question only while nobody waits here.
    ASSERT_TRUE(waitUntil([] { return silentBus().service.calls() > 0; }, std::chrono::minutes(1)));
    EXPECT_TRUE(turn(1000));
    EXPECT_TRUE(appState.isAwaitingAccount());
    EXPECT_FALSE(appState.hasCredentials());
    EXPECT_TRUE(keychain.remembers()) << "it may answer yet";
    EXPECT_NE(find(QStringLiteral("A procurar a tua conta...")), nullptr);
    EXPECT_NE(find(QStringLiteral("Em curso")), nullptr) << "the spinner";
    EXPECT_EQ(find(QStringLiteral("Adicionar provedor")), nullptr) << "there may be one";
    shoot("home-awaiting");

    appState.saveCredentials("http://127.0.0.1:1", "ana", "word");
    EXPECT_TRUE(appState.hasCredentials());
    EXPECT_TRUE(turn(1000));
    EXPECT_FALSE(appState.toastMessage());

    scheduler.advance(KeychainQueue::patience);
    EXPECT_EQ(appState.toastMessage(), "O porta-chaves não responde. Nada fica guardado para a próxima vez.");
    EXPECT_FALSE(keychain.remembers());
    const auto all = keychainQueue.run([](KeychainService&) {});
    EXPECT_TRUE(waitUntil([&] { return all.isFinished(); }, std::chrono::minutes(1)))
        << "what waited for the keyring has been let go";
    EXPECT_TRUE(turn(1000));
}

TEST_F(SilentKeyringTest, AWelcomeStandsWhereTheWaitHasEndedWithoutAnAccount) {
    show();
    ASSERT_TRUE(appState.isAwaitingAccount());
    scheduler.advance(KeychainQueue::patience);
    ASSERT_TRUE(waitUntil([this] { return !appState.isAwaitingAccount(); }, std::chrono::minutes(1)));
    EXPECT_NE(find(QStringLiteral("Nenhum provedor associado")), nullptr);
    EXPECT_EQ(find(QStringLiteral("Em curso")), nullptr);
    EXPECT_TRUE(waitUntil([this] { return focusName() == "Adicionar provedor"; })) << focusName();
}

} // namespace
} // namespace ondavia::testing
