#include "protocol/AccountExpiry.h"

#include <charconv>
#include <cmath>
#include <string_view>

namespace ondavia {

std::optional<Date> expiryOf(const XtreamUserInfo& account) {
    constexpr double latest = 9e12;
    std::string_view digits = account.expDate ? std::string_view(*account.expDate) : std::string_view();
    if (digits.starts_with('+') && !digits.starts_with("+-")) {
        digits.remove_prefix(1);
    }
    double seconds = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), seconds);
    if (digits.empty() || error != std::errc() || end != digits.data() + digits.size() ||
        !(std::abs(seconds) < latest)) {
        return std::nullopt;
    }
    return Date(std::chrono::microseconds(std::llround(seconds * 1e6)));
}

} // namespace ondavia
