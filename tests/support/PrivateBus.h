#pragma once

#include "support/TestSupport.h"

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace ondavia::testing {

/// A session bus of the test's own, on which nothing is started by name. Make it before anything of the
/// process speaks to the session bus: libraries keep their first connection.
class PrivateBus final {
public:
    PrivateBus() {
        const QString configuration = m_folder.filePath(QStringLiteral("bus.conf"));
        QFile file(configuration);
        file.open(QIODevice::WriteOnly);
        file.write("<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen>"
                   "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                   "<allow own=\"*\"/><allow eavesdrop=\"true\"/></policy></busconfig>");
        file.close();
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--config-file=") + configuration, QStringLiteral("--nofork"),
                        QStringLiteral("--print-address")});
        m_daemon.waitForReadyRead();
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_daemon.readLine().trimmed());
    }

    /// Starts a real Secret Service with an unlocked keyring on the bus.
    void startSecretService() {
        m_keyring.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_keyring.start(QStringLiteral("gnome-keyring-daemon"),
                        {QStringLiteral("--foreground"), QStringLiteral("--components=secrets"),
                         QStringLiteral("--unlock"),
                         QStringLiteral("--control-directory=") + m_folder.path()});
        m_keyring.write("test");
        m_keyring.closeWriteChannel();
        const QString name = QStringLiteral("test");
        const QDBusConnection bus =
            QDBusConnection::connectToBus(QString::fromUtf8(qgetenv("DBUS_SESSION_BUS_ADDRESS")), name);
        waitUntil([&bus] {
            return bus.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.secrets")).value();
        });
        QDBusConnection::disconnectFromBus(name);
    }

    ~PrivateBus() {
        for (QProcess* process : {&m_keyring, &m_daemon}) {
            process->terminate();
            process->waitForFinished();
        }
    }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QProcess m_keyring;
};

} // namespace ondavia::testing
