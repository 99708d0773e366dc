#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ondavia {

/// The bytes that `text` stands for in the standard alphabet. Strict: no white space, no foreign
/// character, padded to a multiple of four. Unused bits of the last character may be set. An empty text
/// stands for no bytes.
[[nodiscard]] std::optional<std::string> decodeBase64(std::string_view text);

} // namespace ondavia
