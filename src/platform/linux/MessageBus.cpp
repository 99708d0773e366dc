#include "platform/linux/MessageBus.h"

#include <gio/gio.h>

#include <QFutureWatcher>

#include <future>
#include <memory>
#include <string>
#include <thread>

namespace ondavia {
namespace {

struct ReleaseObject final {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template<class T> using GPointer = std::unique_ptr<T, ReleaseObject>;

QDBusConnection connectionTo(MessageBus::Kind kind) {
    return kind == MessageBus::Kind::Session ? QDBusConnection::sessionBus() : QDBusConnection::systemBus();
}

/// Whether the bus lets this user in. Ends early when `end` is cancelled.
bool letsIn(MessageBus::Kind kind, GCancellable* end) {
    const GBusType type = kind == MessageBus::Kind::Session ? G_BUS_TYPE_SESSION : G_BUS_TYPE_SYSTEM;
    const std::unique_ptr<char, decltype(&g_free)> address(
        g_dbus_address_get_for_bus_sync(type, end, nullptr), g_free);
    if (!address) {
        return false;
    }
    const GPointer<GDBusConnection> connection(g_dbus_connection_new_for_address_sync(
        address.get(), G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT, nullptr, end, nullptr));
    return connection != nullptr;
}

/// Whether there is a connection. One that QtDBus makes stays, for whoever asks next.
bool answers(MessageBus::Kind kind, const std::stop_token& stop) {
    const GPointer<GCancellable> end(g_cancellable_new());
    const std::stop_callback cancelling(stop, [&end] { g_cancellable_cancel(end.get()); });
    return letsIn(kind, end.get()) && connectionTo(kind).isConnected();
}

constexpr const char* sessionBusAddress = "DBUS_SESSION_BUS_ADDRESS";

/// Whether the session bus has not decided within `patience`. One that is not there decides at once.
bool isSessionBusSilent(std::chrono::milliseconds patience) {
    const GPointer<GCancellable> end(g_cancellable_new());
    std::promise<void> decision;
    const auto decided = decision.get_future();
    const std::jthread search([&] {
        letsIn(MessageBus::Kind::Session, end.get());
        decision.set_value();
    });
    const bool isSilent = decided.wait_for(patience) == std::future_status::timeout;
    g_cancellable_cancel(end.get());
    return isSilent;
}

} // namespace

SilentBusDetour::SilentBusDetour()
    : m_isHiding(isSessionBusSilent(patience)) {
    if (m_isHiding) {
        m_address = qgetenv(sessionBusAddress);
        qputenv(sessionBusAddress, "disabled:");
    }
}

SilentBusDetour::~SilentBusDetour() {
    if (!m_isHiding) {
        return;
    }
    QDBusConnection::sessionBus();
    if (m_address.isEmpty()) {
        qunsetenv(sessionBusAddress);
    } else {
        qputenv(sessionBusAddress, m_address);
    }
}

void MessageBus::whenThere(QObject* context, std::function<void(const QDBusConnection&)> use) {
    if (!m_answers) {
        m_answers =
            m_search.run([kind = m_kind](const std::stop_token& stop) { return answers(kind, stop); });
    }
    auto* watcher = new QFutureWatcher<bool>(context);
    QObject::connect(watcher, &QFutureWatcher<bool>::finished, context,
                     [watcher, kind = m_kind, use = std::move(use)] {
                         watcher->deleteLater();
                         if (watcher->result()) {
                             use(connectionTo(kind));
                         }
                     });
    watcher->setFuture(*m_answers);
}

} // namespace ondavia
