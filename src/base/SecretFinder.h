#pragma once

#include "base/Redaction.h"

#include <string_view>
#include <vector>

namespace ondavia {

/// Marks in `marks`, which has an element for each byte of `text`, where `secret` stands by the rules of
/// `standsIn`; at the end of a text that was cut, where its beginning stands. Says whether it does at all.
/// Any thread.
bool markSecret(std::string_view text, std::string_view secret, TextEnd end, std::vector<bool>& marks);

} // namespace ondavia
