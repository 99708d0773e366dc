#include "cli/Failures.h"

#include "base/Redaction.h"
#include "cli/Command.h"
#include "platform/URLSession.h"
#include "protocol/XtreamError.h"
#include "protocol/wire/DecodingError.h"

#include <string_view>

namespace ondavia::cli {
namespace {

std::string_view wordsFor(URLError::Kind kind) {
    using Kind = URLError::Kind;
    switch (kind) {
    case Kind::UnknownHost:
        return "the server's name is not known";
    case Kind::Unreachable:
        return "nobody answers at this address";
    case Kind::TimedOut:
        return "the server took too long";
    case Kind::NoEncryption:
        return "no encrypted connection with this server";
    case Kind::Untrusted:
        return "nobody vouches for the server's certificate";
    case Kind::NoReply:
        return "the server closed the connection without a reply";
    case Kind::BrokenOff:
        return "the connection broke off";
    case Kind::Cut:
        return "the connection ended before the reply did";
    case Kind::TooManyRedirects:
        return "the server sends us in a circle";
    case Kind::TooLong:
    case Kind::Cancelled:
    case Kind::Other:
        break;
    }
    return {};
}

std::string explain(const URLError& error) {
    const std::string_view words = wordsFor(error.kind());
    return words.empty() ? error.what() : std::string(words) + " (" + error.what() + ")";
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
