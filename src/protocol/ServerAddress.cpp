#include "protocol/ServerAddress.h"

#include "base/Text.h"

#include <algorithm>

namespace ondavia {

namespace {

bool startsWithIgnoringCase(std::string_view text, std::string_view lowercasePrefix) {
    return text.size() >= lowercasePrefix.size() &&
           std::ranges::equal(text.substr(0, lowercasePrefix.size()), lowercasePrefix,
                              [](char left, char right) {
                                  return (left >= 'A' && left <= 'Z' ? left - 'A' + 'a' : left) == right;
                              });
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
