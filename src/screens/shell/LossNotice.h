#pragma once

#include <QString>

namespace ondavia {

struct OpenReport;

/// What the user has to know about rows of their own or downloaded ones that were damaged or gone; empty when
/// nothing was.
[[nodiscard]] QString lossNotice(const OpenReport& report);

} // namespace ondavia
