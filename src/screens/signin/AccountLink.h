#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ondavia {

/// An account as it stands in a provider's link.
struct AccountLink final {
    /// Everything before the file name: scheme if there is one, host, port, path.
    std::string server;
    std::string username;
    std::string password;

    bool operator==(const AccountLink&) const = default;
};

/// Longest link that is looked at, in bytes.
inline constexpr std::size_t maximumAccountLink = 8192;

/// Reads a pasted link to `player_api.php` or `get.php` with `username` and `password` in its query; the
/// two are taken as they stand, as every URL of the account will hold them again, and the last of several
/// counts. Absent for every other text: another file, a
/// value missing, empty, not UTF-8 or with control characters in it. Pure, any thread.
[[nodiscard]] std::optional<AccountLink> parseAccountLink(std::string_view text);

} // namespace ondavia
