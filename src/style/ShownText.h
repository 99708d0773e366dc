#pragma once

#include <QString>

#include <string_view>

namespace ondavia {

/// Of a name, or of a line of a text.
inline constexpr qsizetype longestShownLine = 300;

/// What a screen shows of a provider's words: control characters are blanks, what turns the direction of
/// writing is left out, and no more than its first `longest` characters stand, since a text of many
/// thousands, of which a line is seen, takes seconds to be laid out. Any thread.
[[nodiscard]] QString shownText(std::string_view text, qsizetype longest = longestShownLine);

} // namespace ondavia
