#include "screens/signin/AccountLink.h"

#include "base/Text.h"

#include <algorithm>
#include <charconv>

namespace ondavia {

namespace {

bool startsWithIgnoringCase(std::string_view text, std::string_view lowercasePrefix) {
    return text.size() >= lowercasePrefix.size() &&
           std::ranges::equal(text.substr(0, lowercasePrefix.size()), lowercasePrefix,
                              [](char left, char right) {
                                  return (left >= 'A' && left <= 'Z' ? left - 'A' + 'a' : left) == right;
                              });
}

/// A "%" that escapes nothing stands for itself.
std::string percentDecoded(std::string_view text) {
    std::string decoded;
    for (std::size_t index = 0; index < text.size(); ++index) {
        unsigned value = 0;
        const char* digits = text.data() + index + 1;
        if (text[index] == '%' && index + 2 < text.size() &&
            std::from_chars(digits, digits + 2, value, 16).ptr == digits + 2) {
            decoded.push_back(static_cast<char>(value));
            index += 2;
        } else {
            decoded.push_back(text[index]);
        }
    }
    return decoded;
}

bool isUsable(std::string_view value) {
    return !value.empty() && isValidUtf8(value) && std::ranges::none_of(value, [](char byte) {
        return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7f;
    });
}

/// The value of the last `key` in a query.
std::string queryValue(std::string_view query, std::string_view key) {
    std::string value;
    while (!query.empty()) {
        const std::string_view item = query.substr(0, query.find('&'));
        query.remove_prefix(std::min(query.size(), item.size() + 1));
        if (item.size() > key.size() && item.starts_with(key) && item[key.size()] == '=') {
            value = percentDecoded(item.substr(key.size() + 1));
        }
    }
    return value;
}

/// The text before the last slash when one of the two files follows it.
std::optional<std::string_view> serverOf(std::string_view address) {
    const std::size_t slash = address.rfind('/');
    if (slash == std::string_view::npos || slash == 0 || address[slash - 1] == '/') {
        return std::nullopt;
    }
    const std::string_view file = address.substr(slash + 1);
    if (file != "player_api.php" && file != "get.php") {
        return std::nullopt;
    }
    return address.substr(0, slash);
}

} // namespace

bool hasWebScheme(std::string_view server) {
    return startsWithIgnoringCase(server, "http://") || startsWithIgnoringCase(server, "https://");
}

std::optional<AccountLink> parseAccountLink(std::string_view text) {
    const std::string_view trimmed = trimmedWhitespaceAndNewlines(text);
    const std::string_view link = trimmed.substr(0, trimmed.find('#'));
    const std::size_t question = link.find('?');
    if (link.size() > maximumAccountLink || question == std::string_view::npos) {
        return std::nullopt;
    }
    const auto server = serverOf(link.substr(0, question));
    const bool hasForeignScheme =
        server && !hasWebScheme(*server) && server->find("://") != std::string_view::npos;
    if (!server || !isUsable(*server) || hasForeignScheme) {
        return std::nullopt;
    }
    const std::string_view query = link.substr(question + 1);
    AccountLink account{std::string(*server), queryValue(query, "username"), queryValue(query, "password")};
    if (!isUsable(account.username) || !isUsable(account.password)) {
        return std::nullopt;
    }
    return account;
}

} // namespace ondavia
