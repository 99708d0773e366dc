#pragma once

#include "platform/NWPathMonitor.h"

#include <memory>

namespace ondavia {

/// The path as QNetworkInformation reports it. Created and started on the main thread, and its handler
/// runs there.
[[nodiscard]] std::unique_ptr<NWPathMonitor> makeQtPathMonitor();

} // namespace ondavia
