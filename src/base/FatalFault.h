#pragma once

#include <string_view>

namespace ondavia {

/// Ends the process after an error line in the `general` category: for values that the protocol leaves
/// no outcome for. Any thread; never returns.
[[noreturn]] void fatalFault(std::string_view reason);

/// What `fatalFault` calls after its log line. The default ends the process with std::abort. A fuzz
/// target, which must outlive its input, installs a handler that throws.
using FatalFaultHandler = void (*)(std::string_view reason);
void setFatalFaultHandler(FatalFaultHandler handler);

} // namespace ondavia
