#pragma once

#include <optional>
#include <string_view>

namespace ondavia {

/// "16:9" or "16/9" as a number; absent for "Original" and for whatever is no ratio of two numbers above
/// zero.
[[nodiscard]] std::optional<float> parseDisplayAspectRatio(std::string_view text);

} // namespace ondavia
