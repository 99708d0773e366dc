#pragma once

#include "platform/linux/CurlURLSession.h"
#include "protocol/XtreamAPIClient.h"
#include "support/TestSupport.h"

#include <memory>
#include <optional>
#include <string>

namespace ondavia::testing {

/// A client with real sessions.
inline std::shared_ptr<XtreamAPIClient>
makeClient(const std::string& server, const std::string& username = "u", const std::string& password = "p") {
    return std::make_shared<XtreamAPIClient>(server, username, password, makeCurlURLSession);
}

/// The XtreamError that `work` raises; absent when it raises none.
template<class Work> std::optional<XtreamError> xtreamErrorOf(Work work) {
    try {
        work();
    } catch (const XtreamError& error) {
        return error;
    }
    return std::nullopt;
}

} // namespace ondavia::testing
