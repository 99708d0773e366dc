#pragma once

#include "base/Date.h"
#include "platform/URLSession.h"

#include <qcoro/qcorotask.h>

#include <string>

namespace ondavia {

/// What asking the provider told about an account.
enum class AccountVerdict {
    Accepted,
    /// Accepted, though the date of expiry lies in the past.
    Expired,
    /// The provider knows the question and says no.
    Refused,
    /// Something answered that is no such provider.
    NotThisProtocol,
    /// The provider answered with a failure of its own.
    ServerFailure,
    /// Nobody answered.
    Unreachable,
    /// No trusted encryption with this server.
    Untrusted,
    /// The three texts make no address.
    BadAddress,
    /// This machine could not ask.
    NotAsked
};

/// An account as it was typed.
struct TypedAccount final {
    std::string server;
    std::string username;
    std::string password;
};

/// Logs in with `account` and judges the answer by the time that is `now`. Never raises. Main thread.
QCoro::Task<AccountVerdict> checkAccount(TypedAccount account, URLSessionFactory makeSession, Date now);

} // namespace ondavia
