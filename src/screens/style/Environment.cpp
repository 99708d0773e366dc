#include "screens/style/Environment.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFontDatabase>

namespace ondavia {

namespace {

/// The portal packs the value into one variant or, in its older form, into two.
QVariant unpacked(QVariant value) {
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

Environment::Environment(QObject* parent)
    : QObject(parent)
    , m_fontFamily(QFontDatabase::families().contains(QStringLiteral("Inter"))
                       ? QStringLiteral("Inter")
                       : QFontDatabase::systemFont(QFontDatabase::GeneralFont).family()) {
    askDesktop();
}

void Environment::setReducedMotion(bool reduced) {
    if (m_reducedMotion != reduced) {
        m_reducedMotion = reduced;
        Q_EMIT reducedMotionChanged();
    }
}

void Environment::askDesktop() {
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
    question << QStringLiteral("org.gnome.desktop.interface") << QStringLiteral("enable-animations");
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid()) {
            const QVariant answer = unpacked(QVariant::fromValue(reply.value()));
            setReducedMotion(answer.isValid() && !answer.toBool());
        }
        watcher->deleteLater();
    });
}

} // namespace ondavia
