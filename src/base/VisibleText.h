#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace ondavia {

/// `text` with everything that could steer a terminal, or whatever else shows a line, written out: control
/// characters (line ends too), what turns the direction of writing, and bytes that are no UTF-8. Such as
/// `\n`, `\x1b`, `\u202e`. What has been through here once comes through unchanged. Any thread.
[[nodiscard]] std::string visibleText(std::string_view text);

/// The same for a text of JSON, in whose strings they are written as JSON escapes: it still says the same.
[[nodiscard]] std::string visibleJson(std::string_view json);

/// Writes `text` by `visibleText`, and a line end. Whatever the process says on its own standard streams goes
/// through here, since a provider's words may be in it. Any thread.
void writeLine(std::FILE* stream, std::string_view text);

} // namespace ondavia
