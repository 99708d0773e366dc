#include "cli/Failures.h"

#include "base/Redaction.h"
#include "cli/Command.h"
#include "platform/URLSession.h"
#include "protocol/XtreamError.h"
#include "protocol/wire/DecodingError.h"

#include <array>
#include <string_view>
#include <utility>

namespace ondavia::cli {
namespace {

/// The transport's numbers, and what they mean for its user.
constexpr std::array<std::pair<std::int64_t, std::string_view>, 9> transportWords{{
    {6, "the server's name is not known"},
    {7, "nobody answers at this address"},
    {18, "the connection ended before the reply did"},
    {28, "the server took too long"},
    {35, "no encrypted connection with this server"},
    {47, "the server sends us in a circle"},
    {52, "the server closed the connection without a reply"},
    {56, "the connection broke off"},
    {60, "nobody vouches for the server's certificate"},
}};

std::string explain(const URLError& error) {
    for (const auto& [code, words] : transportWords) {
        if (code == error.code()) {
            return std::string(words) + " (" + error.what() + ")";
        }
    }
    return error.what();
}

std::string explainStatus(int status) {
    const std::string number = " (HTTP " + std::to_string(status) + ")";
    if (status == 401 || status == 403) {
        return "the provider refuses this account" + number;
    }
    if (status == 404) {
        return "the server has no such page; is this a provider of this kind?" + number;
    }
    return (status >= 500 ? "the provider has a fault of its own" : "the server did not do as asked") +
           number;
}

std::string explain(const XtreamError& error) {
    switch (error.kind()) {
    case XtreamError::Case::httpError:
        return explainStatus(error.statusCode());
    case XtreamError::Case::invalidURL:
        return "server, user name and password make no address; does a blank or a stray % stand in one?";
    case XtreamError::Case::authFailed:
        return "the provider refuses this account";
    case XtreamError::Case::decodingError:
    case XtreamError::Case::expired:
        break;
    }
    return error.what();
}

std::string explain(const DecodingError& error) {
    std::string text = "the reply to " + (error.action().empty() ? "the log-in" : error.action());
    if (error.row()) {
        text += " cannot be used because of row " + std::to_string(*error.row());
    } else {
        text += " is not what this protocol wants";
    }
    if (!error.keyPath().empty()) {
        text += ", key " + error.keyPath();
    }
    return text + ": " + error.expected() + " expected, " + error.found() + " found";
}

} // namespace

std::string explain(const std::exception& error) {
    if (const auto* transport = dynamic_cast<const URLError*>(&error)) {
        return explain(*transport);
    }
    if (const auto* protocol = dynamic_cast<const XtreamError*>(&error)) {
        return explain(*protocol);
    }
    if (const auto* decoding = dynamic_cast<const DecodingError*>(&error)) {
        return explain(*decoding);
    }
    // Our own words hold no secret, and a password may be one of them.
    const bool isOwn = dynamic_cast<const CommandError*>(&error) != nullptr;
    return isOwn ? error.what() : maskSecrets(error.what());
}

} // namespace ondavia::cli
