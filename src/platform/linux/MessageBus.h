#pragma once

#include "platform/CountedThreads.h"

#include <QDBusConnection>
#include <QFuture>

#include <chrono>
#include <functional>
#include <optional>

namespace ondavia {

/// A message bus that may be absent, or be there and never answer. QtDBus stands still while it connects,
/// and with it whoever uses any bus meanwhile; so a thread of this object's own finds out first whether
/// there is an answer. Main thread; waits for nobody, nor does its end.
///
/// What is sent over the connection is not to be waited for either: a bus can fall silent later.
class MessageBus final {
public:
    enum class Kind { Session, System };

    explicit MessageBus(Kind kind)
        : m_kind(kind) {}

    /// Hands the connection to `use` in a later turn of the main loop, as soon as the bus has answered;
    /// never where there is none, nor when `context` has gone. The first call begins the search.
    void whenThere(QObject* context, std::function<void(const QDBusConnection&)> use);

private:
    Kind m_kind;
    std::optional<QFuture<bool>> m_answers;
    CountedThreads m_search;
};

/// Keeps Qt from a session bus that takes callers in and never answers: Qt connects before the first window,
/// to tell assistive programs of it, and waits for minutes. For as long as this lives such a bus is hidden,
/// and Qt, once there is an application, remembers that it found none; other libraries find the bus again
/// afterwards.
///
/// Main thread; made before the application, when nobody else reads the environment. Waits for the bus at
/// most `patience`.
class SilentBusDetour final {
public:
    static constexpr std::chrono::seconds patience{3};

    SilentBusDetour();
    ~SilentBusDetour();
    SilentBusDetour(const SilentBusDetour&) = delete;
    SilentBusDetour& operator=(const SilentBusDetour&) = delete;

private:
    bool m_isHiding = false;
    /// Of the silent bus; empty where it is the user's default one.
    QByteArray m_address;
};

} // namespace ondavia
