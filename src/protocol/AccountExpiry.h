#pragma once

#include "base/Date.h"
#include "protocol/wire/AccountRecords.h"

#include <optional>

namespace ondavia {

/// When the account ends, from its Unix seconds as decimal text, which may have a fraction. Absent for an
/// account without an end, for any other text, and for a time that no count of microseconds holds.
[[nodiscard]] std::optional<Date> expiryOf(const XtreamUserInfo& account);

} // namespace ondavia
