#include "platform/linux/LinuxAudioSession.h"

#include "platform/linux/MessageBus.h"
#include "platform/linux/PulseVolume.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace ondavia {
namespace {

class LinuxAudioSession final : public AVAudioSession {
public:
    explicit LinuxAudioSession(PulseVolume& volume)
        : m_volume(volume) {}

    bool setCategory(std::string_view /*category*/, std::string_view /*mode*/) override { return true; }
    bool setActive(bool /*active*/) override { return true; }
    float outputVolume() const override { return m_volume.outputVolume(); }

private:
    PulseVolume& m_volume;
};

/// One inhibition at a time. A release that is asked for while the request is still on its way follows
/// as soon as the answer brings the cookie.
class ScreenSaverInhibitor final : public IdleInhibitor {
public:
    explicit ScreenSaverInhibitor(MessageBus& bus)
        : m_bus(bus) {}

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

    /// Whoever asks meanwhile is heard when this is through.
    void settle() {
        if (!m_asking) {
            m_asking = true;
            m_bus.whenThere(&m_context, [this](const QDBusConnection& bus) {
                m_asking = false;
                settleOver(bus);
            });
        }
    }

    void settleOver(const QDBusConnection& bus) {
        if (m_wanted && !m_cookie) {
            inhibit(bus);
        } else if (!m_wanted && m_cookie) {
            QDBusMessage release = call(QStringLiteral("UnInhibit"));
            release << *m_cookie;
            (void)bus.send(release);
            m_cookie.reset();
        }
    }

    void inhibit(const QDBusConnection& bus) {
        m_asking = true;
        QDBusMessage request = call(QStringLiteral("Inhibit"));
        request << QStringLiteral("Ondavia") << QStringLiteral("Playing video");
        auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(request), &m_context);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_context, [this, watcher, bus] {
            const QDBusPendingReply<uint> reply = *watcher;
            watcher->deleteLater();
            m_asking = false;
            if (reply.isValid()) {
                m_cookie = reply.value();
                settleOver(bus);
            }
        });
    }

    MessageBus& m_bus;
    bool m_wanted = false;
    bool m_asking = false;
    std::optional<uint> m_cookie;
    QObject m_context;
};

} // namespace

std::unique_ptr<AVAudioSession> makeLinuxAudioSession(PulseVolume& volume) {
    return std::make_unique<LinuxAudioSession>(volume);
}

std::unique_ptr<IdleInhibitor> makeScreenSaverInhibitor(MessageBus& sessionBus) {
    return std::make_unique<ScreenSaverInhibitor>(sessionBus);
}

} // namespace ondavia
