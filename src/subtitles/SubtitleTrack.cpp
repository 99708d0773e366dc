#include "subtitles/SubtitleTrack.h"

#include "base/Text.h"
#include "subtitles/SRTParser.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <string_view>

namespace ondavia {
namespace {

using LanguageName = std::pair<std::string_view, std::string_view>;
constexpr auto languageNames = std::to_array<LanguageName>({
    {"pt", "Português"}, {"por", "Português"}, {"ptbr", "Português (Brasil)"},
    {"en", "English"},   {"eng", "English"},   {"es", "Español"},
    {"spa", "Español"},  {"fr", "Français"},   {"fre", "Français"},
    {"fra", "Français"}, {"de", "Deutsch"},    {"ger", "Deutsch"},
    {"it", "Italiano"},  {"ita", "Italiano"},  {"ru", "Русский"},
    {"rus", "Русский"},  {"zh", "中文"},       {"chi", "中文"},
    {"ja", "日本語"},    {"jpn", "日本語"},
});

/// `text` with its "%41" as "A", or as it stands where that would be no text.
std::string withoutPercentEscapes(std::string_view text) {
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        unsigned char byte = 0;
        const char* const digits = text.data() + at + 1;
        const bool isEscape = text[at] == '%' && at + 2 < text.size() &&
                              std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2;
        plain += isEscape ? static_cast<char>(byte) : text[at];
        at += isEscape ? 2 : 0;
    }
    return isValidUtf8(plain) ? plain : std::string(text);
}

std::string lastPathComponent(std::string_view url) {
    url = url.substr(0, url.find_first_of("?#"));
    if (const auto mark = url.find("://"); mark != std::string_view::npos) {
        const auto path = url.find('/', mark + std::string_view("://").size());
        url = path == std::string_view::npos ? std::string_view() : url.substr(path);
    }
    while (url.ends_with('/')) {
        url.remove_suffix(1);
    }
    return withoutPercentEscapes(url.substr(url.rfind('/') + 1));
}

/// A point at the very beginning or end begins no extension.
std::string withoutExtension(const std::string& name) {
    const auto point = name.rfind('.');
    const bool hasExtension = point != std::string::npos && point > 0 && point + 1 < name.size();
    return hasExtension ? name.substr(0, point) : name;
}

/// Language token, where the file's name ends in one that is known, and what to call the track.
std::pair<std::optional<std::string>, std::string> inferLanguage(const std::string& url) {
    const std::string name = withoutExtension(lastPathComponent(url));
    // The tokens are plain letters, so that those of other alphabets need no lower case.
    const std::string lowered = asciiLowercase(name);
    for (const char separator : {'.', '_', '-'}) {
        const auto last = lowered.rfind(separator);
        if (last == std::string::npos) {
            continue;
        }
        const std::string token = lowered.substr(last + 1);
        const auto* const known = std::ranges::find(languageNames, token, &LanguageName::first);
        if (known != languageNames.end()) {
            return {token, std::string(known->second)};
        }
    }
    return {std::nullopt, name.empty() ? "Subtitles" : name};
}

} // namespace

std::optional<SubtitleTrack> SubtitleTrack::make(const std::string& url, std::string srtContent) {
    auto cues = SRTParser::parse(std::move(srtContent));
    if (cues.empty()) {
        return std::nullopt;
    }
    auto [language, displayName] = inferLanguage(url);
    return SubtitleTrack{"srt-" + std::to_string(std::hash<std::string>()(url)), std::move(language),
                         std::move(displayName), url, std::move(cues)};
}

const SubtitleCue* SubtitleTrack::activeCue(double time) const {
    auto low = std::ptrdiff_t{0};
    auto high = static_cast<std::ptrdiff_t>(cues.size()) - 1;
    while (low <= high) {
        const auto middle = (low + high) / 2;
        const SubtitleCue& cue = cues[static_cast<std::size_t>(middle)];
        if (cue.start <= time && cue.end > time) {
            return &cue;
        }
        if (cue.start > time) {
            high = middle - 1;
        } else {
            low = middle + 1;
        }
    }
    return nullptr;
}

} // namespace ondavia
