#pragma once

#include <string_view>

namespace ondavia {

/// Whether `server` begins with "http://" or "https://", in whatever case. Pure, any thread.
[[nodiscard]] bool hasWebScheme(std::string_view server);

/// Whether `server` begins with one of the two in other than small letters, blanks before it aside.
/// `XtreamAPIClient` takes such an address for one without a scheme, and puts "http://" in front. Pure, any
/// thread.
[[nodiscard]] bool hasSchemeInCapitals(std::string_view server);

} // namespace ondavia
