#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ondavia::demo {

/// Arguments of ffmpeg, without the output file, which is appended. Paths in them are relative to the media
/// folder, so that they need no escaping inside a filter.
using Arguments = std::vector<std::string>;

/// What a loop writes into its picture.
std::string loopLabel(std::size_t number);
Arguments loopRecipe(std::size_t number, const std::string& labelFile);
Arguments filmRecipe(std::size_t number, int seconds, const std::string& labelFile,
                     const std::string& subtitleFile);
/// The same film in the other container.
Arguments repackRecipe(const std::string& filmFile, const std::string& subtitleFile);
Arguments episodeRecipe(const std::string& labelFile);

} // namespace ondavia::demo
