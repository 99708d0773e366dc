#pragma once

#include <string>

namespace ondavia::cli {

class Interruption;

/// The first line of standard input, without its line end. Where that is a terminal, it is asked for and not
/// shown. Raises CommandError for an empty one, and Interrupted.
[[nodiscard]] std::string readPassword(const Interruption& interruption);

} // namespace ondavia::cli
