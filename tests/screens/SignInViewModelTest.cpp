#include "screens/signin/SignInViewModel.h"
#include "ScreensFixture.h"
#include "support/HttpServer.h"
#include "support/NoThreads.h"

#include <gmock/gmock.h>

#include <system_error>

namespace ondavia::testing {
namespace {

using ::testing::HasSubstr;

constexpr const char* accepted = R"({"user_info":{"auth":1,"exp_date":null},"server_info":{}})";
constexpr const char* secret = "very-secret-word";

class SignInTest : public ScreensFixture {
protected:
    void answer(int status, const std::string& body, const char* contentType = "application/json") {
        server.server.Get("/player_api.php", [=](const httplib::Request&, httplib::Response& response) {
            response.status = status;
            response.set_content(body, contentType);
        });
        server.start();
    }
    void enter(const std::string& typed) {
        model.setServer(QString::fromStdString(typed));
        model.setUsername(QStringLiteral("ana"));
        model.setPassword(QString::fromLatin1(secret));
    }
    /// Tests the account and gives the result's text.
    std::string test(const std::string& typed) {
        enter(typed);
        model.test();
        EXPECT_TRUE(waitUntil([this] { return !model.isChecking(); }));
        EXPECT_THAT(model.resultText().toStdString(), Not(HasSubstr(secret)));
        return model.resultText().toStdString();
    }

    void signInAndWait(const std::string& typed) {
        enter(typed);
        model.signIn();
        ASSERT_TRUE(waitUntil([this] { return !model.isChecking(); }));
        EXPECT_THAT(model.resultText().toStdString(), Not(HasSubstr(secret)));
    }

    HttpServer server;
    int signedIn = 0;
    SignInViewModel model{appState,
                          keychain,
                          makeCurlURLSession,
                          [this] { ++signedIn; },
                          nullptr,
                          [] { return Date(std::chrono::seconds(2'000'000'000)); }};
};

TEST_F(SignInTest, PastedLinkFillsAllThreeFields) {
    model.editServer(QStringLiteral("http://tv.example:8080/get.php?username=ana&password=p%40ss&type=m3u"));
    EXPECT_EQ(model.server(), QStringLiteral("http://tv.example:8080"));
    EXPECT_EQ(model.username(), QStringLiteral("ana"));
    EXPECT_EQ(model.password(), QStringLiteral("p%40ss"));
    EXPECT_TRUE(model.isComplete());
}

TEST_F(SignInTest, ALinkTypedByHandStaysWholeUntilItsFieldIsLeft) {
    const QString link = QStringLiteral("http://tv.example/get.php?username=ana&password=palavra");
    for (qsizetype length = 1; length <= link.size(); ++length) {
        model.editServer(link.first(length));
        ASSERT_EQ(model.server(), link.first(length)) << "torn apart while it was typed";
    }
    EXPECT_TRUE(model.isComplete()) << "a pointer presses the button before the field is left";
    model.readLink();
    EXPECT_EQ(model.server(), QStringLiteral("http://tv.example"));
    EXPECT_EQ(model.username(), QStringLiteral("ana"));
    EXPECT_EQ(model.password(), QStringLiteral("palavra"));
}

TEST_F(SignInTest, ALinkPastedOverAnAddressIsReadAtOnce) {
    model.editServer(QStringLiteral("http://tv.example"));
    model.editServer(QStringLiteral("http://tv.example/get.php?username=ana&password=palavra"));
    EXPECT_EQ(model.server(), QStringLiteral("http://tv.example"));
    EXPECT_EQ(model.password(), QStringLiteral("palavra"));
}

TEST_F(SignInTest, IsIncompleteWhileAnyOfTheThreeIsEmpty) {
    enter("http://tv.example");
    EXPECT_TRUE(model.isComplete());
    model.setServer(QStringLiteral("  "));
    EXPECT_FALSE(model.isComplete());
    model.signIn();
    model.test();
    EXPECT_FALSE(model.isChecking());
    EXPECT_EQ(signedIn, 0);
    EXPECT_FALSE(appState.hasCredentials());
}

TEST_F(SignInTest, OffersTheSchemeThatAnAddressLacks) {
    model.setServer(QStringLiteral("tv.example:8080"));
    ASSERT_TRUE(model.lacksScheme());
    model.addScheme();
    EXPECT_EQ(model.server(), QStringLiteral("http://tv.example:8080"));
    EXPECT_FALSE(model.lacksScheme());
    for (const char* typed : {"", "t", "http:", "http:/", "HTTPS://tv.example"}) {
        model.setServer(QString::fromLatin1(typed));
        EXPECT_FALSE(model.lacksScheme()) << typed;
    }
}

TEST_F(SignInTest, SaysThatAnAccountWorks) {
    answer(200, accepted);
    EXPECT_EQ(test(server.url()), "A conta funciona.");
    EXPECT_EQ(model.resultKind(), NoticeKind::Success);
}

TEST_F(SignInTest, HintsAtAnAccountPastItsTerm) {
    answer(200, R"({"user_info":{"auth":1,"exp_date":"1999999999"}})");
    EXPECT_THAT(test(server.url()), HasSubstr("prazo"));
    EXPECT_EQ(model.resultKind(), NoticeKind::Warning);
}

TEST_F(SignInTest, AnExpiryToComeIsNoWarning) {
    answer(200, R"({"user_info":{"auth":1,"exp_date":"2000000001"}})");
    test(server.url());
    EXPECT_EQ(model.resultKind(), NoticeKind::Success);
}

TEST_F(SignInTest, TellsARefusalByReply) {
    answer(200, R"({"user_info":{"auth":0}})");
    EXPECT_THAT(test(server.url()), HasSubstr("recusou"));
    EXPECT_EQ(model.resultKind(), NoticeKind::Error);
}

TEST_F(SignInTest, TellsARefusalByStatus401) {
    answer(401, "");
    EXPECT_THAT(test(server.url()), HasSubstr("recusou"));
}

TEST_F(SignInTest, TellsARefusalByStatus403) {
    answer(403, "");
    EXPECT_THAT(test(server.url()), HasSubstr("recusou"));
}

TEST_F(SignInTest, TellsAWebPageFromAProvider) {
    answer(200, "<html><body>Welcome to nginx</body></html>", "text/html");
    EXPECT_THAT(test(server.url()), HasSubstr("provedor compatível"));
}

TEST_F(SignInTest, TellsOtherJsonFromAProvider) {
    answer(200, R"({"status":"ok"})");
    EXPECT_THAT(test(server.url()), HasSubstr("provedor compatível"));
}

TEST_F(SignInTest, TellsAMissingPageFromAProvider) {
    answer(404, "");
    EXPECT_THAT(test(server.url()), HasSubstr("provedor compatível"));
}

TEST_F(SignInTest, TellsATroubledServer) {
    answer(503, "");
    EXPECT_THAT(test(server.url()), HasSubstr("problemas"));
}

TEST_F(SignInTest, TellsThatNobodyAnswers) {
    server.start();
    const std::string closed = server.url();
    server.stop();
    EXPECT_THAT(test(closed), HasSubstr("Ninguém responde"));
}

TEST_F(SignInTest, AQuestionThatCannotEvenBeAskedIsAnswered) {
    enter("http://127.0.0.1:1");
    {
        const NoThreads none;
        model.test();
    }
    EXPECT_TRUE(waitUntil([&] { return !model.isChecking(); }));
    EXPECT_EQ(model.resultKind(), NoticeKind::Error);
}

TEST_F(SignInTest, TellsAnAddressThatIsNone) {
    EXPECT_THAT(test("http://tv .example"), HasSubstr("endereço válido"));
}

TEST_F(SignInTest, DropsTheAnswerToAnOlderQuestion) {
    answer(200, accepted);
    enter(server.url());
    model.test();
    ASSERT_TRUE(model.isChecking());
    model.setPassword(QStringLiteral("another"));
    EXPECT_FALSE(model.isChecking());
    // A second question on the same server: once it is answered, so is the first.
    model.test();
    ASSERT_TRUE(waitUntil([this] { return !model.isChecking(); }));
    model.setPassword(QStringLiteral("third"));
    drainEvents();
    EXPECT_EQ(model.resultText(), QString());
}

TEST_F(SignInTest, OutlivedByItsQuestionItIsNotTouched) {
    answer(200, accepted);
    auto shortLived = std::make_unique<SignInViewModel>(appState, keychain, makeCurlURLSession, [] {});
    shortLived->setServer(QString::fromStdString(server.url()));
    shortLived->setUsername(QStringLiteral("ana"));
    shortLived->setPassword(QStringLiteral("word"));
    shortLived->test();
    shortLived.reset();
    // Another one's answer from the same server comes after the first.
    EXPECT_EQ(test(server.url()), "A conta funciona.");
}

TEST_F(SignInTest, SavesAnAcceptedAccountLeavesAndHasItLoaded) {
    answer(200, accepted);
    model.open();
    enter(server.url() + " ");
    model.signIn();
    EXPECT_TRUE(model.isChecking());
    EXPECT_FALSE(appState.hasCredentials()) << "the provider has not been asked yet";
    ASSERT_TRUE(waitUntil([this] { return !model.isOpen(); }));
    EXPECT_TRUE(appState.hasCredentials());
    EXPECT_EQ(appState.server(), server.url());
    EXPECT_EQ(appState.password(), secret);
    EXPECT_EQ(signedIn, 1);
    EXPECT_FALSE(model.isChecking());
    EXPECT_EQ(model.password(), QString()) << "the step must not keep the password";
}

TEST_F(SignInTest, StaysWithItsVerdictWhenTheAccountIsRefused) {
    answer(200, R"({"user_info":{"auth":0}})");
    model.open();
    signInAndWait(server.url());
    EXPECT_THAT(model.resultText().toStdString(), HasSubstr("recusou"));
    EXPECT_TRUE(model.isOpen());
    EXPECT_FALSE(model.canSaveAnyway());
    EXPECT_FALSE(appState.hasCredentials());
    model.saveAnyway();
    EXPECT_FALSE(appState.hasCredentials()) << "nobody offered that";
    EXPECT_EQ(signedIn, 0);
}

TEST_F(SignInTest, StaysWithItsVerdictWhereNoProviderIs) {
    answer(404, "");
    model.open();
    signInAndWait(server.url());
    EXPECT_TRUE(model.isOpen());
    EXPECT_FALSE(model.canSaveAnyway());
    signInAndWait("http://tv .example");
    EXPECT_THAT(model.resultText().toStdString(), HasSubstr("endereço válido"));
    EXPECT_FALSE(model.canSaveAnyway());
    EXPECT_FALSE(appState.hasCredentials());
}

TEST_F(SignInTest, OffersToSaveAnAccountWhoseProviderCannotBeReached) {
    server.start();
    const std::string closed = server.url();
    server.stop();
    model.open();
    EXPECT_THAT(test(closed), HasSubstr("Ninguém responde"));
    EXPECT_FALSE(model.canSaveAnyway()) << "a test is not meant to save";
    signInAndWait(closed);
    EXPECT_TRUE(model.isOpen());
    EXPECT_FALSE(appState.hasCredentials());
    ASSERT_TRUE(model.canSaveAnyway());
    model.saveAnyway();
    EXPECT_EQ(appState.server(), closed);
    EXPECT_FALSE(model.isOpen());
    EXPECT_EQ(signedIn, 1);
}

TEST_F(SignInTest, OffersToSaveAnAccountPastItsTerm) {
    answer(200, R"({"user_info":{"auth":1,"exp_date":"1999999999"}})");
    signInAndWait(server.url());
    EXPECT_EQ(model.resultKind(), NoticeKind::Warning);
    EXPECT_FALSE(appState.hasCredentials());
    EXPECT_TRUE(model.canSaveAnyway());
}

TEST_F(SignInTest, OffersToSaveWhileTheServerIsInTrouble) {
    answer(503, "");
    signInAndWait(server.url());
    EXPECT_TRUE(model.canSaveAnyway());
    model.setPassword(QStringLiteral("another"));
    EXPECT_FALSE(model.canSaveAnyway()) << "that was about another account";
}

TEST_F(SignInTest, AFailureOfThisMachineEndsTheCheckToo) {
    SignInViewModel other(
        appState, keychain,
        [](const URLSessionConfiguration&) -> std::shared_ptr<URLSession> {
            throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
        },
        [] {});
    other.setServer(QStringLiteral("http://tv.example"));
    other.setUsername(QStringLiteral("ana"));
    other.setPassword(QString::fromLatin1(secret));
    other.signIn();
    ASSERT_TRUE(waitUntil([&other] { return !other.isChecking(); }));
    EXPECT_THAT(other.resultText().toStdString(), HasSubstr("verificada"));
    EXPECT_TRUE(other.canSaveAnyway());
}

TEST_F(SignInTest, OpensWithTheKnownAccountButWithoutItsPassword) {
    appState.saveCredentials("http://tv.example", "ana", secret);
    model.open();
    EXPECT_EQ(model.server(), QStringLiteral("http://tv.example"));
    EXPECT_EQ(model.username(), QStringLiteral("ana"));
    EXPECT_EQ(model.password(), QString());
}

TEST_F(SignInTest, SaysWhetherTheAccountIsRemembered) {
    EXPECT_FALSE(model.remembers()) << "a store in memory forgets";
    const std::unique_ptr<SecItemStore> vault = makeFileVault(folder.path() / "vault");
    const KeychainService lasting(*vault, defaults);
    const SignInViewModel other(appState, lasting, makeCurlURLSession, [] {});
    EXPECT_TRUE(other.remembers());
}

} // namespace
} // namespace ondavia::testing
