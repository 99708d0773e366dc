#pragma once

#include <string>

namespace ondavia::bench {

/// The body at `url`, by libcurl alone. Raises std::runtime_error.
[[nodiscard]] std::string download(const std::string& url);

} // namespace ondavia::bench
