#include "screens/signin/AccountLink.h"

#include "base/Text.h"
#include "protocol/ServerAddress.h"

#include <algorithm>

namespace ondavia {

namespace {

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
            value = item.substr(key.size() + 1);
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
