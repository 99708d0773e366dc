#include "CommandLine.h"

#include "store/LibraryStore.h"
#include "support/HttpServer.h"

#include <chrono>

namespace ondavia::cli::testing {
namespace {

QStringList signInArguments(const std::string& server) {
    return {QStringLiteral("signin"), QStringLiteral("--server"), QString::fromStdString(server),
            QStringLiteral("--username"), QString::fromLatin1(account)};
}

class AccountCommands : public CliTest {
protected:
    RunResult signInWith(const std::string& input) { return cli.run(signInArguments(url()), input); }
    void expectNobodySignedIn() {
        const auto account = cli.run({QStringLiteral("account")});
        EXPECT_EQ(account.status, 1);
        EXPECT_TRUE(holds(account.errors, "error: nobody is signed in")) << account.errors;
    }
};

TEST_F(AccountCommands, SignInKeepsTheAccountForTheNextCommand) {
    const auto result = signInWith(std::string(password) + "\n");
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output, "");
    const auto shown = cli.run({QStringLiteral("account"), QStringLiteral("--json")});
    EXPECT_EQ(shown.status, 0) << shown.errors;
    const auto objects = objectsOf(shown.output);
    ASSERT_EQ(objects.size(), 1U);
    EXPECT_EQ(objects[0][QStringLiteral("server")].toString().toStdString(), url());
    EXPECT_EQ(objects[0][QStringLiteral("username")].toString(), QString::fromLatin1(account));
    EXPECT_EQ(objects[0][QStringLiteral("status")].toString(), QStringLiteral("Active"));
    EXPECT_GT(objects[0][QStringLiteral("maxConnections")].toInt(), 0);
    EXPECT_TRUE(objects[0][QStringLiteral("expirationDate")].toString().endsWith(QLatin1Char('Z')));
}

TEST_F(AccountCommands, TheListOfProcessesNeverShowsThePassword) {
    provider.setFault("slow-first-byte:login");
    QProcess process;
    cli.prepare(process, signInArguments(url()));
    process.start();
    process.write((std::string(password) + "\n").c_str());
    ASSERT_TRUE(process.waitForBytesWritten());
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (std::chrono::steady_clock::now() < end) {
        const std::string commandLine = commandLineOf(process.processId());
        ASSERT_TRUE(holds(commandLine, "signin"));
        ASSERT_FALSE(holds(commandLine, password));
    }
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0);
}

TEST_F(AccountCommands, ALineEndOfAnotherSystemIsNoPartOfThePassword) {
    EXPECT_EQ(signInWith(std::string(password) + "\r\nmore").status, 0);
}

TEST_F(AccountCommands, AWrongPasswordIsRefusedAndNotKept) {
    const auto result = signInWith("wrong-password\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(holds(result.errors, "error: the provider refuses this account")) << result.errors;
    EXPECT_EQ(result.errors.find("wrong-password"), std::string::npos);
    expectNobodySignedIn();
}

TEST_F(AccountCommands, NoPasswordIsAFailure) {
    for (const char* input : {"", "\n"}) {
        const auto result = signInWith(input);
        EXPECT_EQ(result.status, 1);
        EXPECT_TRUE(holds(result.errors, "error: no password")) << result.errors;
    }
}

TEST_F(AccountCommands, APasswordThatMakesNoAddressIsExplained) {
    const auto result = signInWith("two words\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(holds(result.errors, "make no address")) << result.errors;
}

TEST_F(AccountCommands, ASchemeInCapitalsIsPartOfTheNameAndThatIsSaid) {
    for (const char* address : {"HTTP://tv.invalid", " Https://tv.invalid"}) {
        const auto result = cli.run(signInArguments(address), std::string(password) + "\n");
        EXPECT_EQ(result.status, 1);
        EXPECT_TRUE(holds(result.errors, "warning: only http:// and https:// in small letters"))
            << result.errors;
    }
    EXPECT_FALSE(holds(signInWith(std::string(password) + "\n").errors, "small letters"));
}

TEST_F(AccountCommands, AServerThatIsNotThereIsToldFromARefusal) {
    provider.stop();
    const auto result = signInWith(std::string(password) + "\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(holds(result.errors, "error: nobody answers at this address")) << result.errors;
}

TEST_F(AccountCommands, AWebPageIsNotThisProtocol) {
    provider.setFault("html-200:login");
    const auto result = signInWith(std::string(password) + "\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(holds(result.errors, "error: the reply to the log-in is not what this protocol wants"))
        << result.errors;
    expectNobodySignedIn();
}

TEST_F(AccountCommands, JsonOfAnotherKindIsNotThisProtocol) {
    ondavia::testing::HttpServer other;
    other.server.Get("/player_api.php", [](const httplib::Request&, httplib::Response& response) {
        response.set_content(R"({"hello":"world"})", "application/json");
    });
    other.start();
    const auto result = cli.run(signInArguments(other.url()), std::string(password) + "\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(holds(result.errors, "holds no account")) << result.errors;
}

TEST_F(AccountCommands, AFaultOfTheProviderIsCalledOne) {
    provider.setFault("status-503:login");
    const auto result = signInWith(std::string(password) + "\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(holds(result.errors, "the provider has a fault of its own (HTTP 503)")) << result.errors;
}

TEST_F(AccountCommands, AnExpiredAccountThatIsAcceptedGetsAWarning) {
    provider.setFault("expired:login");
    const auto result = signInWith(std::string(password) + "\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(holds(result.errors, "warning: the account has expired on ")) << result.errors;
}

TEST_F(AccountCommands, WithoutAKeyringTheAccountIsForgottenAndThatIsSaid) {
    cli.setEnvironment("ONDAVIA_VAULT", "");
    cli.setEnvironment("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    const auto result = signInWith(std::string(password) + "\n");
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_TRUE(holds(result.errors, "warning: no keyring answers")) << result.errors;
    EXPECT_FALSE(isPasswordStored(cli.folder()));
    expectNobodySignedIn();
}

TEST_F(AccountCommands, SignOutForgetsTheAccountThoughTheLibraryCannotBeOpened) {
    cli.signIn(url());
    ASSERT_TRUE(isPasswordStored(cli.folder()));
    const auto file = cli.folder() / "store" / "user.db";
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    const auto result = cli.run({QStringLiteral("signout")});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(holds(result.errors, "the account is forgotten")) << result.errors;
    EXPECT_TRUE(holds(result.errors, "user.db")) << result.errors;
    EXPECT_FALSE(isPasswordStored(cli.folder()));
}

TEST_F(AccountCommands, SignOutForgetsAccountCatalogueAndWhatTheUserMade) {
    cli.fill(url());
    ASSERT_TRUE(isPasswordStored(cli.folder()));
    {
        const auto store = LibraryStore::open(cli.folder() / "store");
        StoreContext& rows = store->mainContext();
        rows.insert(Favorite("main", "main_1001"));
        rows.insert(WatchHistory("main", "main_100001", 30, 90, "movie"));
        EPGProgram programme;
        programme.id = "p1";
        programme.channelId = "c1";
        rows.insert(programme);
        rows.save();
    }
    const auto result = cli.run({QStringLiteral("signout")});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_FALSE(isPasswordStored(cli.folder())) << "neither in the vault nor in a row's address";
    const auto store = LibraryStore::open(cli.folder() / "store");
    StoreContext& rows = store->mainContext();
    EXPECT_EQ(rows.count<Channel>(), 0);
    EXPECT_EQ(rows.count<Playlist>(), 0);
    EXPECT_EQ(rows.count<Favorite>(), 0);
    EXPECT_EQ(rows.count<WatchHistory>(), 0);
    EXPECT_EQ(rows.count<EPGProgram>(), 0);
    expectNobodySignedIn();
}

} // namespace
} // namespace ondavia::cli::testing
