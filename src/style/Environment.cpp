#include "style/Environment.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFontDatabase>
#include <QFutureWatcher>
#include <QGuiApplication>
#include <QtConcurrent>

namespace ondavia {

namespace {

struct Fonts final {
    QString text;
    QString icons;
};

/// Loaded once for the process: loading takes away what texts that are already there are drawn with.
const Fonts& fonts() {
    static const Fonts loaded = [] {
        const QString inter = QStringLiteral("Inter");
        const QString text = QFontDatabase::hasFamily(inter)
                                 ? inter
                                 : QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
        // Our own copy: of the files that a system may have of it, a compressed one is slow to open.
        const int icons = QFontDatabase::addApplicationFont(QStringLiteral(":/ondavia/fonts/icons.ttf"));
        // Texts start out in the application's font: any other would be loaded for nothing.
        QGuiApplication::setFont(QFont(text));
        return Fonts{text, QFontDatabase::applicationFontFamilies(icons).value(0)};
    }();
    return loaded;
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
    , m_fontFamily(fonts().text)
    , m_iconFamily(fonts().icons) {
    // The first to ask for the session bus waits until it is there.
    auto* bus = new QFutureWatcher<void>(this);
    connect(bus, &QFutureWatcher<void>::finished, this, &Environment::askDesktop);
    bus->setFuture(QtConcurrent::run([] { QDBusConnection::sessionBus(); }));
}

void Environment::noteFrame() {
    m_hasShownFrame = true;
    Q_EMIT hasShownFrameChanged();
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
