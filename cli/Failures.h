#pragma once

#include <exception>
#include <string>

namespace ondavia::cli {

/// What went wrong, in words for whoever must do something about it. One line without secrets.
[[nodiscard]] std::string explain(const std::exception& error);

} // namespace ondavia::cli
