#pragma once

#include "demo/Faults.h"

#include <memory>
#include <string>
#include <string_view>

namespace ondavia::demo {

using Body = std::shared_ptr<const std::string>;

/// The body with whatever the faults do to its bytes; the same body when they do nothing. Pure.
Body spoil(const Body& body, std::string_view action, const ActiveFaults& faults);

/// A whole gzip member.
std::string gzip(std::string_view text);

/// A gzip member, a few megabytes, that unpacks to "[", `megabytes` of blanks and "]".
std::string gzipBomb(std::size_t megabytes);

} // namespace ondavia::demo
