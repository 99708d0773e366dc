#pragma once

namespace ondavia {

/// The one profile that there is.
inline constexpr const char* mainProfileId = "main";

} // namespace ondavia
