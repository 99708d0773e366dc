#include "protocol/wire/Numbers.h"

#include "base/FatalFault.h"

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

/// How many digits `text` begins with.
std::size_t leadingDigits(std::string_view text) {
    std::size_t count = 0;
    while (count < text.size() && isDigit(text[count])) {
        ++count;
    }
    return count;
}

} // namespace

std::optional<std::int64_t> exactInteger(double number) {
    if (number < -beyondInteger || number >= beyondInteger || number != std::trunc(number)) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(number);
}

std::string flexibleText(double number) {
    if (number == std::trunc(number)) {
        const auto whole = exactInteger(number);
        if (!whole) {
            fatalFault("a whole number beyond 64 bits where a text was expected");
        }
        return std::to_string(*whole);
    }
    // A fraction has at most 17 significant digits; from 0.0001 on none of them needs an exponent.
    std::array<char, 32> digits{};
    const auto end =
        std::abs(number) >= 1e-4
            ? std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed)
            : std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return {digits.data(), end.ptr};
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
