#pragma once

#include "platform/linux/QtURLSession.h"
#include "protocol/XtreamAPIClient.h"

#include <memory>
#include <string>

namespace ondavia::testing {

/// A client with real sessions.
inline std::shared_ptr<XtreamAPIClient>
makeClient(const std::string& server, const std::string& username = "u", const std::string& password = "p") {
    return std::make_shared<XtreamAPIClient>(server, username, password, makeQtURLSession);
}

} // namespace ondavia::testing
