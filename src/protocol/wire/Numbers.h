#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What JSON numbers become in the fields of the wire records. Pure.
namespace ondavia::wire {

/// The integer that a JSON number is exactly, judged by its text: `1e3` and `7.0` are integers; absent when
/// it has a fraction, however small, or is beyond 64 bits.
[[nodiscard]] std::optional<std::int64_t> exactInteger(std::string_view token);

/// The text of a number in a flexible field: a whole one without a decimal point, any other as the
/// shortest decimal text that reads back as the same float. Absent for a whole number beyond signed 64
/// bits, for which there is no outcome.
[[nodiscard]] std::optional<std::string> flexibleText(double number);

/// Whether `token` is a number by JSON's grammar, however large.
[[nodiscard]] bool isJSONNumber(std::string_view token);

} // namespace ondavia::wire
