#pragma once

#include <string>

namespace ondavia {

/// The bytes of a subtitle file as UTF-8: as they are where they are that, else read as ISO Latin-1, in which
/// any bytes are a text. Any thread.
[[nodiscard]] std::string decodeSubtitleText(std::string bytes);

} // namespace ondavia
