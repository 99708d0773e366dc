#pragma once

#include <chrono>
#include <filesystem>
#include <string_view>

namespace ondavia {

/// Makes `bytes` the content of `file`, so that whatever happens in between, a full device or a loss of
/// power, leaves the old content or the new one, whole. The file is of mode 0600 afterwards; where its name
/// is a symbolic link, the file behind it is replaced. The bytes are on the device when the call returns.
///
/// Raises std::system_error with the system's own number; the old content is then still there, unless it was
/// only the folder that could not be written through. Any thread; of two writers at once the later wins.
/// What earlier calls left that were killed is removed once it is of `leftoverAge`.
void replaceFile(const std::filesystem::path& file, std::string_view bytes);

/// Nobody else's replacement that still goes on was last written to so long ago. Should one be all the same,
/// it fails, and its file stays as it was.
inline constexpr std::chrono::seconds leftoverAge = std::chrono::minutes(1);

/// Removes what replacements of `file` left that were killed, as far as it was not written to for `age`.
/// Raises nothing but std::system_error of a folder that cannot be read. Any thread.
void removeLeftovers(const std::filesystem::path& file, std::chrono::seconds age);

} // namespace ondavia
