#pragma once

#include <string>

namespace ondavia {

/// The upper-case text form of a new random UUID (version 4), made by the million. Each thread's generator
/// is seeded once from the system; nothing secret may hang on it. Any thread.
[[nodiscard]] std::string randomUUID();

} // namespace ondavia
