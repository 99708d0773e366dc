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
/// In a colour of its own, with its number large.
Arguments episodeRecipe(int number, const std::string& labelFile);
/// Half a minute of sound, to be repeated under a long film.
Arguments longSoundRecipe();
/// The time large in the picture, and another colour every minute. Two pictures a second: cheap to make.
Arguments longFilmRecipe(int seconds, const std::string& labelFile, const std::string& soundFile);

} // namespace ondavia::demo
