#include "platform/linux/LinuxAudioSession.h"
#include "platform/linux/MessageBus.h"
#include "support/PrivateBus.h"

#include <QDBusVirtualObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;

/// The desktop's service on a bus of the test's own. It writes down what it is asked, and answers requests
/// when the test says so.
class ScreenSaver final : public QDBusVirtualObject {
public:
    ScreenSaver()
        : m_bus(QDBusConnection::connectToBus(QString::fromUtf8(qgetenv("DBUS_SESSION_BUS_ADDRESS")),
                                              QStringLiteral("screen saver"))) {
        EXPECT_TRUE(m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/ScreenSaver"), this));
        EXPECT_TRUE(m_bus.registerService(QStringLiteral("org.freedesktop.ScreenSaver")));
    }
    ~ScreenSaver() override { QDBusConnection::disconnectFromBus(QStringLiteral("screen saver")); }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*bus*/) override {
        std::string call = message.member().toStdString();
        for (const QVariant& argument : message.arguments()) {
            call += " " + argument.toString().toStdString();
        }
        calls.push_back(call);
        if (message.member() == QStringLiteral("Inhibit")) {
            message.setDelayedReply(true);
            m_request = message;
        }
        return true;
    }

    void grant(uint cookie) { m_bus.send(m_request.createReply(cookie)); }
    void refuse() { m_bus.send(m_request.createErrorReply(QDBusError::AccessDenied, QStringLiteral("no"))); }
    [[nodiscard]] bool hears(std::size_t count) const {
        return waitUntil([&] { return calls.size() >= count; });
    }

    std::vector<std::string> calls;

private:
    QDBusConnection m_bus;
    QDBusMessage m_request;
};

class ScreenSaverTest : public ::testing::Test {
protected:
    ScreenSaverTest() {
        // Libraries keep their first connection, so there is one bus for all tests of the process.
        static const PrivateBus privateBus;
        saver = std::make_unique<ScreenSaver>();
        bus = std::make_unique<MessageBus>(MessageBus::Kind::Session);
        inhibitor = makeScreenSaverInhibitor(*bus);
    }
    /// The inhibitor has heard all that was said to it so far: another one's request is answered by now.
    void settle() {
        const auto another = makeScreenSaverInhibitor(*bus);
        const std::size_t before = saver->calls.size();
        another->setInhibited(true);
        ASSERT_TRUE(saver->hears(before + 1));
        saver->grant(99);
        another->setInhibited(false);
        ASSERT_TRUE(saver->hears(before + 2));
        EXPECT_EQ(saver->calls.back(), "UnInhibit 99");
        saver->calls.resize(before);
    }

    std::unique_ptr<ScreenSaver> saver;
    std::unique_ptr<MessageBus> bus;
    std::unique_ptr<IdleInhibitor> inhibitor;
};

TEST_F(ScreenSaverTest, IsHeldBackOnceAndLetGoWithTheCookie) {
    inhibitor->setInhibited(true);
    inhibitor->setInhibited(true);
    ASSERT_TRUE(saver->hears(1));
    saver->grant(7);
    settle();
    EXPECT_THAT(saver->calls, ElementsAre("Inhibit Ondavia Playing video"));
    inhibitor->setInhibited(false);
    inhibitor->setInhibited(false);
    ASSERT_TRUE(saver->hears(2));
    settle();
    EXPECT_THAT(saver->calls, ElementsAre("Inhibit Ondavia Playing video", "UnInhibit 7"));
}

TEST_F(ScreenSaverTest, IsLetGoAsSoonAsThereIsACookieWhereNobodyWaitsForItAnyMore) {
    inhibitor->setInhibited(true);
    ASSERT_TRUE(saver->hears(1));
    inhibitor->setInhibited(false);
    saver->grant(8);
    ASSERT_TRUE(saver->hears(2));
    EXPECT_EQ(saver->calls.back(), "UnInhibit 8");
}

TEST_F(ScreenSaverTest, IsAskedForOnceThoughTheWishChangesBeforeTheAnswer) {
    inhibitor->setInhibited(true);
    ASSERT_TRUE(saver->hears(1));
    inhibitor->setInhibited(false);
    inhibitor->setInhibited(true);
    saver->grant(9);
    settle();
    EXPECT_EQ(saver->calls.size(), 1U);
}

TEST_F(ScreenSaverTest, ThatRefusesIsAskedAgainForTheNextFilm) {
    inhibitor->setInhibited(true);
    ASSERT_TRUE(saver->hears(1));
    saver->refuse();
    settle();
    inhibitor->setInhibited(false);
    settle();
    EXPECT_EQ(saver->calls.size(), 1U) << "there is nothing to let go";
    inhibitor->setInhibited(true);
    ASSERT_TRUE(saver->hears(2));
    saver->grant(10);
    settle();
    inhibitor->setInhibited(false);
    ASSERT_TRUE(saver->hears(3));
    EXPECT_EQ(saver->calls.back(), "UnInhibit 10");
}

} // namespace
} // namespace ondavia::testing
