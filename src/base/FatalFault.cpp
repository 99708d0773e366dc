#include "base/FatalFault.h"

#include "base/AppLogger.h"

#include <atomic>
#include <cstdlib>

namespace ondavia {
namespace {

std::atomic<FatalFaultHandler> faultHandler = nullptr;

} // namespace

void fatalFault(std::string_view reason) {
    AppLogger::general.error("fatal: %s", {reason});
    if (const auto handler = faultHandler.load()) {
        handler(reason);
    }
    std::abort();
}

void setFatalFaultHandler(FatalFaultHandler handler) {
    faultHandler = handler;
}

} // namespace ondavia
