#include "protocol/wire/Numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace ondavia::wire {
namespace {

/// 2 to the power of 63: the first float beyond the largest signed 64-bit integer.
constexpr double beyondInteger = 9223372036854775808.0;

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Digits that a signed 64-bit integer has at most.
constexpr std::int64_t mostDigits = 19;

/// The exponent of a number, or one as far beyond all others as matters.
std::int64_t clampedExponent(std::string_view text) {
    constexpr std::int64_t beyondEveryText = std::int64_t{1} << 60;
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    std::int64_t exponent = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), exponent);
    if (result.ec == std::errc::result_out_of_range) {
        return text.starts_with('-') ? -beyondEveryText : beyondEveryText;
    }
    return std::clamp(exponent, -beyondEveryText, beyondEveryText);
}

/// A JSON number as its digits, without zeros at either end, and the zeros that follow them: a negative count
/// of those makes a fraction. No digit is left of a zero.
struct DecimalNumber final {
    explicit DecimalNumber(std::string_view token);

    std::string digits;
    std::int64_t zeros = 0;
};

DecimalNumber::DecimalNumber(std::string_view token) {
    const auto exponentAt = std::min(token.find_first_of("eE"), token.size());
    auto significand = token.substr(0, exponentAt);
    significand.remove_prefix(significand.starts_with('-') ? 1 : 0);
    const auto point = std::min(significand.find('.'), significand.size());
    digits = significand.substr(0, point);
    if (point < significand.size()) {
        digits += significand.substr(point + 1);
        zeros = static_cast<std::int64_t>(point + 1) - static_cast<std::int64_t>(significand.size());
    }
    if (exponentAt < token.size()) {
        zeros += clampedExponent(token.substr(exponentAt + 1));
    }
    const auto last = digits.find_last_not_of('0');
    zeros += static_cast<std::int64_t>(digits.size()) - static_cast<std::int64_t>(last + 1);
    digits.resize(last + 1);
    digits.erase(0, digits.find_first_not_of('0'));
}

/// How many digits `text` begins with.
std::size_t leadingDigits(std::string_view text) {
    std::size_t count = 0;
    while (count < text.size() && isDigit(text[count])) {
        ++count;
    }
    return count;
}

} // namespace

std::optional<std::int64_t> exactInteger(std::string_view token) {
    const DecimalNumber number(token);
    if (number.digits.empty()) {
        return 0;
    }
    const std::int64_t size = static_cast<std::int64_t>(number.digits.size()) + number.zeros;
    if (number.zeros < 0 || size > mostDigits) {
        return std::nullopt;
    }
    const std::string text = (token.starts_with('-') ? "-" : "") + number.digits +
                             std::string(static_cast<std::size_t>(number.zeros), '0');
    std::int64_t integer = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), integer);
    return result.ec == std::errc() ? std::optional(integer) : std::nullopt;
}

std::optional<std::string> flexibleText(double number) {
    if (number == std::trunc(number)) {
        const bool isWithin = number >= -beyondInteger && number < beyondInteger;
        return isWithin ? std::optional(std::to_string(static_cast<std::int64_t>(number))) : std::nullopt;
    }
    // A fraction has at most 17 significant digits; from 0.0001 on none of them needs an exponent.
    std::array<char, 32> digits{};
    const auto end =
        std::abs(number) >= 1e-4
            ? std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed)
            : std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return std::string(digits.data(), end.ptr);
}

bool isJSONNumber(std::string_view token) {
    if (token.starts_with('-')) {
        token.remove_prefix(1);
    }
    const auto whole = leadingDigits(token);
    if (whole == 0 || (whole > 1 && token.front() == '0')) {
        return false;
    }
    token.remove_prefix(whole);
    if (token.starts_with('.')) {
        const auto fraction = leadingDigits(token.substr(1));
        if (fraction == 0) {
            return false;
        }
        token.remove_prefix(1 + fraction);
    }
    if (token.starts_with('e') || token.starts_with('E')) {
        token.remove_prefix(1);
        if (token.starts_with('+') || token.starts_with('-')) {
            token.remove_prefix(1);
        }
        const auto exponent = leadingDigits(token);
        if (exponent == 0) {
            return false;
        }
        token.remove_prefix(exponent);
    }
    return token.empty();
}

} // namespace ondavia::wire
