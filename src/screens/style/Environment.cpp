#include "screens/style/Environment.h"

#include "platform/PoolWork.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFontDatabase>
#include <QGuiApplication>

namespace ondavia {

namespace {

/// From our own copy: of the several files that a system may have of it, a compressed one is slow to open.
QString loadIconFont() {
    const int font = QFontDatabase::addApplicationFont(QStringLiteral(":/ondavia/fonts/icons.ttf"));
    return QFontDatabase::applicationFontFamilies(font).value(0);
}

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
    , m_fontFamily(QFontDatabase::hasFamily(QStringLiteral("Inter"))
                       ? QStringLiteral("Inter")
                       : QFontDatabase::systemFont(QFontDatabase::GeneralFont).family())
    , m_iconFamily(loadIconFont()) {
    // Texts start out in the application's font: without this one another would be loaded for nothing.
    QGuiApplication::setFont(QFont(m_fontFamily));
    // The first to ask for the session bus waits until it is there.
    runOnPool([] { QDBusConnection::sessionBus(); }).then(this, [this] { askDesktop(); });
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
