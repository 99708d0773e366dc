#pragma once

#include "protocol/wire/AccountRecords.h"

#include <memory>
#include <qcoro/qcorotask.h>

namespace ondavia {
class AppState;
class XtreamAPIClient;
} // namespace ondavia

namespace ondavia::cli {

/// A client for the account that is signed in. Raises CommandError without one.
[[nodiscard]] std::shared_ptr<XtreamAPIClient> requireClient(const AppState& appState);

/// Logs in. A refusal is raised as CommandError with what the provider says about it, everything else as
/// the client raises it.
QCoro::Task<XtreamUserInfo> logIn(std::shared_ptr<XtreamAPIClient> client);

} // namespace ondavia::cli
