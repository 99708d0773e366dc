#include "support/PrivateBus.h"
#include "support/SilentServer.h"
#include "support/TestSupport.h"

#include <QFile>
#include <QProcess>

#include <gmock/gmock.h>

namespace ondavia::testing {
namespace {

/// Whether a process shows a window, as the display tells.
bool hasWindow(qint64 process) {
    QProcess search;
    search.start(QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                             QStringLiteral("--pid"), QString::number(process)});
    return search.waitForFinished() && !search.readAllStandardOutput().isEmpty();
}

TEST(Application, SaysInAWindowThatItsLibraryCannotBeOpened) {
    const TemporaryFolder folder;
    const QString plain = QString::fromStdString((folder.path() / "plain").string());
    QFile file(plain);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // The error names the folder, and no error may show an account.
    environment.insert(QStringLiteral("ONDAVIA_DATA_DIR"),
                       plain + QStringLiteral("/http://tv.example/live/ana/palavra/1"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    QProcess application;
    application.setProcessEnvironment(environment);
    application.start(QStringLiteral(APPLICATION_PROGRAM), {});
    ASSERT_TRUE(application.waitForStarted());
    EXPECT_TRUE(waitUntil([&] { return hasWindow(application.processId()); }, std::chrono::minutes(2)));
    EXPECT_EQ(application.state(), QProcess::Running);
    const std::string errors = application.readAllStandardError().toStdString();
    EXPECT_THAT(errors, ::testing::HasSubstr("error: "));
    EXPECT_THAT(errors, ::testing::HasSubstr("http://tv.example"));
    EXPECT_THAT(errors, ::testing::Not(::testing::HasSubstr("palavra")));
    application.kill();
    application.waitForFinished();
}

TEST(Application, IsAPlayerThatOtherProgramsSee) {
    const PrivateBus bus;
    const TemporaryFolder folder;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ONDAVIA_DATA_DIR"), QString::fromStdString(folder.path().string()));
    environment.insert(QStringLiteral("ONDAVIA_VAULT"), QStringLiteral("file"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    QProcess application;
    application.setProcessEnvironment(environment);
    application.start(QStringLiteral(APPLICATION_PROGRAM), {});
    ASSERT_TRUE(application.waitForStarted());
    const auto isListed = [] {
        QProcess playerctl;
        playerctl.start(QStringLiteral("playerctl"), {QStringLiteral("--list-all")});
        return playerctl.waitForFinished() && playerctl.readAllStandardOutput() == "ondavia\n";
    };
    EXPECT_TRUE(waitUntil(isListed, std::chrono::minutes(2)));
    application.kill();
    application.waitForFinished();
}

// Qt asks for a bus in one go, libdbus' way; what may wait for one says less at first.
TEST(Application, ShowsItsWindowBesideASessionBusThatNeverAnswers) {
    SilentServer bus;
    const TemporaryFolder folder;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                       QString::fromStdString("unix:path=" + bus.path()));
    environment.insert(QStringLiteral("ONDAVIA_DATA_DIR"), QString::fromStdString(folder.path().string()));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    QProcess application;
    application.setProcessEnvironment(environment);
    application.start(QStringLiteral(APPLICATION_PROGRAM), {});
    ASSERT_TRUE(application.waitForStarted());
    EXPECT_TRUE(waitUntil([&] { return hasWindow(application.processId()); }));
    EXPECT_THAT(bus.said(), ::testing::Not(::testing::IsEmpty()));
    EXPECT_THAT(bus.said(), ::testing::Each(::testing::Not(::testing::HasSubstr("AUTH EXTERNAL"))));
    application.kill();
    application.waitForFinished();
}

/// What the application prints, on a machine without a display.
std::string printed(const QString& option) {
    QProcess application;
    QProcessEnvironment surroundings = QProcessEnvironment::systemEnvironment();
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        surroundings.remove(QString::fromLatin1(variable));
    }
    application.setProcessEnvironment(surroundings);
    application.start(QStringLiteral(APPLICATION_PROGRAM), {option});
    constexpr int patience = 120'000;
    EXPECT_TRUE(application.waitForFinished(patience));
    EXPECT_EQ(application.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(application.exitCode(), 0) << application.readAllStandardError().toStdString();
    return application.readAllStandardOutput().toStdString();
}

TEST(Application, ExplainsItselfWithoutADisplay) {
    for (const char* option : {"--help", "-h", "--help-all"}) {
        EXPECT_NE(printed(QString::fromLatin1(option)).find("--language"), std::string::npos) << option;
    }
}

TEST(Application, TellsItsVersionWithoutADisplay) {
    EXPECT_EQ(printed(QStringLiteral("--version")), "ondavia " ONDAVIA_VERSION "\n");
}

} // namespace
} // namespace ondavia::testing
