#pragma once

#include "support/TestSupport.h"

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <csignal>
#include <filesystem>
#include <sys/resource.h>

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
        // A write past the limit of `limitKeyringFiles` is to fail, not to end the process.
        m_keyring.setChildProcessModifier([] { (void)std::signal(SIGXFSZ, SIG_IGN); });
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

    /// Locks the keyring; there is nobody who could unlock it again.
    static void lockKeyring() {
        const QString name = QStringLiteral("lock");
        const QDBusConnection bus =
            QDBusConnection::connectToBus(QString::fromUtf8(qgetenv("DBUS_SESSION_BUS_ADDRESS")), name);
        QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.secrets"), QStringLiteral("/org/freedesktop/secrets"),
            QStringLiteral("org.freedesktop.Secret.Service"), QStringLiteral("Lock"));
        const QDBusObjectPath keyring(QStringLiteral("/org/freedesktop/secrets/aliases/default"));
        call << QVariant::fromValue(QList<QDBusObjectPath>{keyring});
        bus.call(call);
        QDBusConnection::disconnectFromBus(name);
    }

    /// The keyring takes calls and answers none, until `false`.
    void silenceKeyring(bool isSilent = true) const {
        ::kill(static_cast<pid_t>(m_keyring.processId()), isSilent ? SIGSTOP : SIGCONT);
    }

    /// From now on the keyring fails to write a file that is larger.
    void limitKeyringFiles(rlim_t bytes) const {
        const rlimit limit{bytes, RLIM_INFINITY};
        prlimit(static_cast<pid_t>(m_keyring.processId()), RLIMIT_FSIZE, &limit, nullptr);
    }

    /// Size of the keyring's largest file.
    [[nodiscard]] static rlim_t keyringSize() {
        rlim_t size = 0;
        const std::filesystem::path home(qEnvironmentVariable("HOME").toStdString());
        for (const auto& entry : std::filesystem::directory_iterator(home / ".local/share/keyrings")) {
            size = std::max<rlim_t>(size, entry.file_size());
        }
        return size;
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
