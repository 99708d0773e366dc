#pragma once

#include <string>
#include <string_view>

namespace ondavia {

/// The user-visible text under `key`: the entry of the user's language, or `defaultText` where that
/// language has none. Key and default always stand together at the place of use; there is no table of
/// defaults. Any thread.
[[nodiscard]] std::string localizedText(std::string_view key, std::string_view defaultText);

} // namespace ondavia
