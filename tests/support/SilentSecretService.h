#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

namespace ondavia::testing {

/// A Secret Service on the session bus that accepts every call and never answers. It hears of calls by the
/// event loop of the thread that made it.
class SilentSecretService final : public QDBusVirtualObject {
public:
    SilentSecretService() {
        QDBusConnection bus = QDBusConnection::connectToBus(
            QString::fromUtf8(qgetenv("DBUS_SESSION_BUS_ADDRESS")), connectionName());
        bus.registerVirtualObject(QStringLiteral("/org/freedesktop/secrets"), this, QDBusConnection::SubPath);
        m_isThere = bus.registerService(QStringLiteral("org.freedesktop.secrets"));
    }
    ~SilentSecretService() override { QDBusConnection::disconnectFromBus(connectionName()); }
    SilentSecretService(const SilentSecretService&) = delete;
    SilentSecretService& operator=(const SilentSecretService&) = delete;

    [[nodiscard]] bool isThere() const { return m_isThere; }
    [[nodiscard]] int calls() const { return m_calls; }

    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) override {
        message.setDelayedReply(true);
        ++m_calls;
        return true;
    }

private:
    static QString connectionName() { return QStringLiteral("silent secret service"); }

    bool m_isThere = false;
    int m_calls = 0;
};

} // namespace ondavia::testing
