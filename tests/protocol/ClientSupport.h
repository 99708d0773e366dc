#pragma once

#include "platform/linux/CurlURLSession.h"
#include "protocol/XtreamAPIClient.h"
#include "support/TestSupport.h"

#include <memory>
#include <string>

namespace ondavia::testing {

/// A client with real sessions.
inline std::shared_ptr<XtreamAPIClient>
makeClient(const std::string& server, const std::string& username = "u", const std::string& password = "p") {
    return std::make_shared<XtreamAPIClient>(server, username, password, makeCurlURLSession);
}

} // namespace ondavia::testing
