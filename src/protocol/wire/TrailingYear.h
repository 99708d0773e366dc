#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace ondavia {

/// A year in round brackets at the end of a title.
struct TrailingYear final {
    /// Bytes of the title in front of the brackets and the white space before them.
    std::size_t nameBytes = 0;
    std::string year;

    bool operator==(const TrailingYear&) const = default;
};

/// The first match of the regular expression `\s*\((\d{4})\)\s*$` in `title`, in time linear in its
/// length. The year is the matched text without spaces and tabs at its ends and without its first and
/// last character: the four digits, unless a line end stands around the brackets. Pure; any thread.
[[nodiscard]] std::optional<TrailingYear> findTrailingYear(std::string_view title);

} // namespace ondavia
