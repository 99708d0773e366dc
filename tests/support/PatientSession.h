#pragma once

#include "platform/linux/CurlURLSession.h"

namespace ondavia::testing {

/// More patient than whoever asks for it is: a loaded machine may be slower than a server may be silent.
inline std::shared_ptr<URLSession> makePatientSession(const URLSessionConfiguration& /*configuration*/) {
    return makeCurlURLSession({.requestTimeout = 600, .resourceTimeout = 600});
}

} // namespace ondavia::testing
