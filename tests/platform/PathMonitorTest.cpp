#include "platform/linux/QtPathMonitor.h"
#include "support/PrivateBus.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QThread>

#include <gtest/gtest.h>

namespace ondavia {
namespace {

/// The system's network manager, as far as Qt asks it: its properties, and that they change. Served by a
/// thread of its own, since Qt waits for the answer.
class NetworkManager final : public QDBusVirtualObject {
public:
    static constexpr uint disconnected = 20;
    static constexpr uint connected = 70;
    static constexpr uint metered = 1;
    static constexpr uint unmetered = 2;

    NetworkManager()
        : m_bus(QDBusConnection::connectToBus(QString::fromUtf8(qgetenv("DBUS_SYSTEM_BUS_ADDRESS")),
                                              QStringLiteral("network manager"))) {
        moveToThread(&m_thread);
        m_thread.start();
        m_bus.registerVirtualObject(path(), this, QDBusConnection::SubPath);
        m_bus.registerService(QStringLiteral("org.freedesktop.NetworkManager"));
    }
    ~NetworkManager() override {
        QDBusConnection::disconnectFromBus(QStringLiteral("network manager"));
        m_thread.quit();
        m_thread.wait();
    }
    NetworkManager(const NetworkManager&) = delete;
    NetworkManager& operator=(const NetworkManager&) = delete;

    void change(const char* property, uint value) const {
        QDBusMessage signal = QDBusMessage::createSignal(
            path(), QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"));
        signal << QStringLiteral("org.freedesktop.NetworkManager")
               << QVariantMap{{QString::fromLatin1(property), value}} << QStringList();
        m_bus.send(signal);
    }

    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const QVariantMap properties{{QStringLiteral("State"), connected},
                                     {QStringLiteral("Connectivity"), 4U},
                                     {QStringLiteral("Metered"), unmetered}};
        return message.member() == QLatin1String("GetAll") &&
               connection.send(message.createReply(properties));
    }

private:
    static QString path() { return QStringLiteral("/org/freedesktop/NetworkManager"); }

    QDBusConnection m_bus;
    QThread m_thread;
};

TEST(QtPathMonitor, ReportsThePathOfTheSystemAndEachOfItsChanges) {
    const testing::PrivateBus bus;
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
    const NetworkManager system;
    const auto monitor = makeQtPathMonitor();
    std::vector<NWPath> reports;
    monitor->setPathUpdateHandler([&reports](const NWPath& path) { reports.push_back(path); });
    monitor->start();
    ASSERT_EQ(reports.size(), 1U) << "the present path is told at once";
    EXPECT_TRUE(reports.back().satisfied);
    EXPECT_FALSE(reports.back().isExpensive);
    const auto last = [&reports](bool satisfied, bool expensive) {
        return testing::waitUntil(
            [&] { return reports.back().satisfied == satisfied && reports.back().isExpensive == expensive; },
            std::chrono::minutes(1));
    };
    system.change("Metered", NetworkManager::metered);
    EXPECT_TRUE(last(true, true));
    system.change("State", NetworkManager::disconnected);
    EXPECT_TRUE(last(false, true));
    system.change("State", NetworkManager::connected);
    EXPECT_TRUE(last(true, true));
}

} // namespace
} // namespace ondavia
