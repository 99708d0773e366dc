#include "platform/linux/LinuxAudioSession.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace ondavia {
namespace {

class LinuxAudioSession final : public AVAudioSession {
public:
    bool setCategory(std::string_view /*category*/, std::string_view /*mode*/) override { return true; }
    bool setActive(bool /*active*/) override { return true; }
};

/// One inhibition at a time. A release that is asked for while the request is still on its way follows
/// as soon as the answer brings the cookie.
class ScreenSaverInhibitor final : public IdleInhibitor {
public:
    void setInhibited(bool inhibited) override {
        if (m_wanted == inhibited) {
            return;
        }
        m_wanted = inhibited;
        settle();
    }

private:
    static QDBusMessage call(const QString& method) {
        return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.ScreenSaver"),
                                              QStringLiteral("/org/freedesktop/ScreenSaver"),
                                              QStringLiteral("org.freedesktop.ScreenSaver"), method);
    }

    void settle() {
        if (m_asking) {
            return;
        }
        if (m_wanted && !m_cookie) {
            inhibit();
        } else if (!m_wanted && m_cookie) {
            QDBusMessage release = call(QStringLiteral("UnInhibit"));
            release << *m_cookie;
            QDBusConnection::sessionBus().send(release);
            m_cookie.reset();
        }
    }

    void inhibit() {
        m_asking = true;
        QDBusMessage request = call(QStringLiteral("Inhibit"));
        request << QStringLiteral("Ondavia") << QStringLiteral("Playing video");
        auto* watcher =
            new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(request), &m_context);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_context, [this, watcher] {
            const QDBusPendingReply<uint> reply = *watcher;
            watcher->deleteLater();
            m_asking = false;
            if (reply.isValid()) {
                m_cookie = reply.value();
                settle();
            }
        });
    }

    bool m_wanted = false;
    bool m_asking = false;
    std::optional<uint> m_cookie;
    QObject m_context;
};

} // namespace

std::unique_ptr<AVAudioSession> makeLinuxAudioSession() {
    return std::make_unique<LinuxAudioSession>();
}

std::unique_ptr<IdleInhibitor> makeScreenSaverInhibitor() {
    return std::make_unique<ScreenSaverInhibitor>();
}

} // namespace ondavia
