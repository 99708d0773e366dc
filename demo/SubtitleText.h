#pragma once

#include <string>

namespace ondavia::demo {

enum class SubtitleFormat { srt, webVtt };
enum class SubtitleLanguage { portuguese, english };

/// A subtitle file with a cue every four seconds, `seconds` long.
std::string subtitleText(SubtitleFormat format, SubtitleLanguage language, int seconds);

} // namespace ondavia::demo
