#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ondavia {

struct XtreamUserInfo final {
    std::optional<std::string> username;
    std::optional<std::string> password;
    /// Free text of the server.
    std::optional<std::string> message;
    /// 1 means authenticated; any other value, or none, means refused.
    std::optional<std::int64_t> auth;
    std::optional<std::string> status;
    /// Unix seconds in decimal; absent for an account without expiry.
    std::optional<std::string> expDate;
    std::optional<std::string> isTrial;
    std::optional<std::string> activeCons;
    std::optional<std::string> createdAt;
    std::optional<std::string> maxConnections;
    std::optional<std::vector<std::string>> allowedOutputFormats;

    bool operator==(const XtreamUserInfo&) const = default;
};

struct XtreamServerInfo final {
    std::optional<std::string> url;
    std::optional<std::string> port;
    std::optional<std::string> httpsPort;
    std::optional<std::string> serverProtocol;
    std::optional<std::string> rtmpPort;
    std::optional<std::string> timezone;
    std::optional<std::int64_t> timestampNow;
    std::optional<std::string> timeNow;

    bool operator==(const XtreamServerInfo&) const = default;
};

/// Reply of the call without an action.
struct XtreamAuthResponse final {
    std::optional<XtreamUserInfo> userInfo;
    std::optional<XtreamServerInfo> serverInfo;

    bool operator==(const XtreamAuthResponse&) const = default;
};

} // namespace ondavia
