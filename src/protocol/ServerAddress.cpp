#include "protocol/ServerAddress.h"

#include "base/Text.h"

namespace ondavia {

namespace {

bool startsWithIgnoringCase(std::string_view text, std::string_view lowercasePrefix) {
    return asciiLowercase(std::string(text.substr(0, lowercasePrefix.size()))) == lowercasePrefix;
}

} // namespace

bool hasWebScheme(std::string_view server) {
    return startsWithIgnoringCase(server, "http://") || startsWithIgnoringCase(server, "https://");
}

bool hasSchemeInCapitals(std::string_view server) {
    const auto address = trimmedWhitespaceAndNewlines(server);
    return hasWebScheme(address) && !address.starts_with("http://") && !address.starts_with("https://");
}

} // namespace ondavia
