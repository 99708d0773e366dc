#include "platform/linux/LogindBrightness.h"
#include "platform/linux/MessageBus.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <fstream>
#include <limits>

namespace ondavia::testing {
namespace {

/// python3-dbusmock's logind on a bus of the test's own, with the one method that counts: it writes into a
/// folder as the real one writes to the kernel, and keeps a line of every call.
class Logind final {
public:
    explicit Logind(const std::filesystem::path& folder) {
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        // The system's own, which has the system's packages.
        m_process.start(QStringLiteral("/usr/bin/python3"),
                        {QStringLiteral("-m"), QStringLiteral("dbusmock"), QStringLiteral("--template"),
                         QStringLiteral("logind")});
        const QDBusConnection bus = QDBusConnection::connectToBus(
            QString::fromUtf8(qgetenv("DBUS_SYSTEM_BUS_ADDRESS")), QStringLiteral("logind"));
        EXPECT_TRUE(waitUntil([&bus] {
            return bus.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.login1")).value();
        }));
        // The real one knows the caller's own session under this name too.
        mock(QStringLiteral("/org/freedesktop/login1"), QStringLiteral("AddSession"),
             {QStringLiteral("auto"), QStringLiteral("seat0"), 1000U, QStringLiteral("ana"), true});
        const QString code = QStringLiteral("if args[2] == 13: raise dbus.exceptions.DBusException('no')\n"
                                            "open('%1/calls', 'a').write('%s %s %d\\n' % tuple(args))\n"
                                            "open('%1/' + args[1] + '/brightness', 'w').write(str(args[2]))")
                                 .arg(QString::fromStdString(folder.string()));
        mock(QStringLiteral("/org/freedesktop/login1/session/auto"), QStringLiteral("AddMethod"),
             {QStringLiteral("org.freedesktop.login1.Session"), QStringLiteral("SetBrightness"),
              QStringLiteral("ssu"), QString(), code});
    }
    ~Logind() {
        QDBusConnection::disconnectFromBus(QStringLiteral("logind"));
        m_process.kill();
        m_process.waitForFinished();
    }
    Logind(const Logind&) = delete;
    Logind& operator=(const Logind&) = delete;

private:
    static void mock(const QString& object, const QString& method, const QVariantList& arguments) {
        QDBusMessage call =
            QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.login1"), object,
                                           QStringLiteral("org.freedesktop.DBus.Mock"), method);
        call.setArguments(arguments);
        const QDBusMessage reply = QDBusConnection(QStringLiteral("logind")).call(call);
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    }

    QProcess m_process;
};

PrivateBus& privateBus() {
    // Libraries keep their first connection, so there is one bus for all tests of the process.
    static PrivateBus bus;
    return bus;
}

class ScreenBrightnessTest : public ::testing::Test {
protected:
    ScreenBrightnessTest() { privateBus(); }

    void addBacklight(const std::string& name, const std::string& type, int brightness, int maximum) const {
        std::filesystem::create_directory(folder.path() / name);
        std::ofstream(folder.path() / name / "type") << type;
        std::ofstream(folder.path() / name / "max_brightness") << maximum << '\n';
        write(name, brightness);
    }
    void write(const std::string& name, int brightness) const {
        std::ofstream(folder.path() / name / "brightness") << brightness << '\n';
    }
    [[nodiscard]] std::vector<std::string> calls() const {
        std::ifstream file(folder.path() / "calls");
        std::vector<std::string> lines;
        for (std::string line; std::getline(file, line);) {
            lines.push_back(line);
        }
        return lines;
    }
    void make() { screen = makeLogindBrightness(bus, folder.path()); }
    [[nodiscard]] bool becomes(double brightness) const {
        return waitUntil([&] { return screen->brightness() == brightness; });
    }

    TemporaryFolder folder;
    MessageBus bus{MessageBus::Kind::System};
    std::unique_ptr<ScreenBrightness> screen;
};

TEST_F(ScreenBrightnessTest, IsReadFromTheBacklightAndSetThroughLogind) {
    const Logind logind(folder.path());
    addBacklight("intel_backlight", "raw", 300, 1500);
    make();
    EXPECT_EQ(screen->brightness(), 0.2);
    screen->setBrightness(0.5);
    EXPECT_TRUE(becomes(0.5));
    EXPECT_EQ(calls(), std::vector<std::string>{"backlight intel_backlight 750"});
}

TEST_F(ScreenBrightnessTest, IsBroughtToTheNearerEndAndNeverQuiteDark) {
    const Logind logind(folder.path());
    addBacklight("panel", "raw", 300, 1000);
    make();
    screen->setBrightness(1.5);
    EXPECT_TRUE(becomes(1.0));
    screen->setBrightness(std::numeric_limits<double>::quiet_NaN());
    screen->setBrightness(-0.5);
    EXPECT_TRUE(becomes(0.001));
    EXPECT_EQ(calls().size(), 2U);
}

TEST_F(ScreenBrightnessTest, AsksForTheLastOfManyWishesAndTellsOnlyWhereItEnds) {
    const Logind logind(folder.path());
    addBacklight("panel", "raw", 300, 1000);
    make();
    std::vector<std::optional<double>> told;
    screen->setOnChange([&] { told.push_back(screen->brightness()); });
    for (int step = 1; step <= 100; ++step) {
        screen->setBrightness(step / 100.0);
    }
    ASSERT_TRUE(waitUntil([&] { return !told.empty(); }));
    EXPECT_EQ(told.front(), 1.0);
    EXPECT_EQ(calls().size(), 1U);
}

TEST_F(ScreenBrightnessTest, TellsOfChangesThatOthersMake) {
    addBacklight("panel", "raw", 300, 1000);
    make();
    int changes = 0;
    screen->setOnChange([&] { ++changes; });
    write("panel", 800);
    EXPECT_TRUE(waitUntil([&] { return changes > 0; }));
    EXPECT_TRUE(becomes(0.8));
    std::ofstream(folder.path() / "panel" / "actual_brightness") << 1;
}

TEST_F(ScreenBrightnessTest, TellsOfWhatTheFirmwareChanges) {
    addBacklight("panel", "raw", 300, 1000);
    std::ofstream(folder.path() / "panel" / "actual_brightness") << 300;
    make();
    int changes = 0;
    screen->setOnChange([&] { ++changes; });
    std::ofstream(folder.path() / "panel" / "actual_brightness") << 200;
    EXPECT_TRUE(waitUntil([&] { return changes > 0; }));
}

TEST_F(ScreenBrightnessTest, TellsWhereItStandsWhenLogindRefuses) {
    const Logind logind(folder.path());
    addBacklight("panel", "raw", 50, 100);
    make();
    int changes = 0;
    screen->setOnChange([&] { ++changes; });
    screen->setBrightness(0.13);
    EXPECT_TRUE(waitUntil([&] { return changes > 0; }));
    EXPECT_EQ(screen->brightness(), 0.5);
    screen->setBrightness(0.14);
    EXPECT_TRUE(becomes(0.14)) << "the next wish is heard";
}

TEST_F(ScreenBrightnessTest, PrefersTheBacklightThatTheKernelWould) {
    addBacklight("a_bare_one", "raw", 10, 100);
    addBacklight("b_platform", "platform", 20, 100);
    addBacklight("c_firmware", "firmware", 30, 100);
    addBacklight("d_firmware", "firmware", 40, 100);
    make();
    EXPECT_EQ(screen->brightness(), 0.3);
}

TEST_F(ScreenBrightnessTest, IsNotThereWithoutABacklight) {
    const Logind logind(folder.path());
    addBacklight("broken", "firmware", 10, 0);
    make();
    EXPECT_EQ(screen->brightness(), std::nullopt);
    screen->setBrightness(0.5);
    const auto nowhere = makeLogindBrightness(bus, folder.path() / "none");
    EXPECT_EQ(nowhere->brightness(), std::nullopt);
    nowhere->setBrightness(0.5);
    // Whatever they would have asked for comes before this.
    addBacklight("panel", "raw", 10, 100);
    make();
    screen->setBrightness(0.7);
    EXPECT_TRUE(becomes(0.7));
    EXPECT_EQ(calls(), std::vector<std::string>{"backlight panel 70"});
}

} // namespace
} // namespace ondavia::testing
