#pragma once

#include "base/Date.h"

#include <qcoro/qcorotask.h>

#include <memory>

namespace ondavia {

class XtreamAPIClient;

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
    BadAddress
};

/// Logs in with `client` and judges the answer. Never raises. Main thread.
QCoro::Task<AccountVerdict> checkAccount(std::shared_ptr<XtreamAPIClient> client, Date now);

} // namespace ondavia
