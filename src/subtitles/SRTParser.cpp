#include "subtitles/SRTParser.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <compare>
#include <cstdlib>

namespace ondavia {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view arrow = "-->";
constexpr std::string_view blockEnd = "\n\n";

/// Makes every kind of line end "\n", in place: a file may be large.
void makeLineEndsPlain(std::string& text) {
    auto to = text.begin();
    char previous = '\0';
    for (const char character : text) {
        const bool isSecondOfTwo = character == '\n' && previous == '\r';
        previous = character;
        if (!isSecondOfTwo) {
            *to++ = character == '\r' ? '\n' : character;
        }
    }
    text.erase(to, text.end());
}

/// Takes the first line off `text`, and its end.
std::string_view takeLine(std::string_view& text) {
    const auto end = text.find('\n');
    const auto line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

/// Calls `take` with each piece between separators, empty ones included.
template<class Take> void split(std::string_view text, std::string_view separator, Take take) {
    for (auto end = text.find(separator); end != std::string_view::npos; end = text.find(separator)) {
        take(text.substr(0, end));
        text.remove_prefix(end + separator.size());
    }
    take(text);
}

std::string_view withoutBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const auto begin = text.find_first_not_of(blanks);
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

/// The text's parts, where there are exactly `count` of them.
template<std::size_t count>
std::optional<std::array<std::string_view, count>> parts(std::string_view text, std::string_view separator) {
    std::array<std::string_view, count> found;
    std::size_t number = 0;
    split(text, separator, [&](std::string_view part) {
        if (number < count) {
            found[number] = part;
        }
        ++number;
    });
    return number == count ? std::optional(found) : std::nullopt;
}

/// All of `text` as a number with a decimal point, whatever the language of the system writes.
std::optional<double> parseNumber(std::string_view text) {
    static const locale_t plainNumbers = newlocale(LC_ALL_MASK, "C", nullptr);
    constexpr std::string_view whiteSpace = " \t\n\v\f\r";
    if (text.empty() || whiteSpace.find(text.front()) != std::string_view::npos) {
        return std::nullopt;
    }
    const std::string terminated(text);
    char* end = nullptr;
    const double number = strtod_l(terminated.c_str(), &end, plainNumbers);
    return end == terminated.c_str() + terminated.size() ? std::optional(number) : std::nullopt;
}

} // namespace

std::vector<SubtitleCue> SRTParser::parse(std::string text) {
    makeLineEndsPlain(text);
    std::string_view all = text;
    if (all.starts_with(byteOrderMark)) {
        all.remove_prefix(byteOrderMark.size());
    }
    std::vector<SubtitleCue> cues;
    split(all, blockEnd, [&cues](std::string_view block) {
        if (auto cue = parseBlock(block)) {
            cues.push_back(std::move(*cue));
        }
    });
    // A time may be no number at all, which "less" cannot put in order.
    std::ranges::stable_sort(cues, [](const SubtitleCue& one, const SubtitleCue& other) {
        return std::weak_order(one.start, other.start) < 0;
    });
    return cues;
}

std::optional<SubtitleCue> SRTParser::parseBlock(std::string_view block) {
    std::string_view line = takeLine(block);
    if (parseDecimalInteger(withoutBlanks(line))) {
        line = takeLine(block);
    }
    const auto timing = parseTiming(line);
    if (!timing) {
        return std::nullopt;
    }
    const std::string text = stripHTMLTags(block);
    const std::string_view shown = trimmedWhitespaceAndNewlines(text);
    if (shown.empty()) {
        return std::nullopt;
    }
    return SubtitleCue{timing->first, timing->second, std::string(shown)};
}

std::optional<std::pair<double, double>> SRTParser::parseTiming(std::string_view line) {
    const auto sides = parts<2>(line, arrow);
    if (!sides) {
        return std::nullopt;
    }
    const auto start = parseTimestamp(withoutBlanks(sides->at(0)));
    const auto end = parseTimestamp(withoutBlanks(sides->at(1)));
    return start && end ? std::optional(std::pair(*start, *end)) : std::nullopt;
}

std::optional<double> SRTParser::parseTimestamp(std::string_view text) {
    std::string pointed(text);
    std::ranges::replace(pointed, ',', '.');
    const auto fields = parts<3>(pointed, ":");
    if (!fields) {
        return std::nullopt;
    }
    const auto hours = parseNumber(fields->at(0));
    const auto minutes = parseNumber(fields->at(1));
    const auto seconds = parseNumber(fields->at(2));
    if (!hours || !minutes || !seconds) {
        return std::nullopt;
    }
    return *hours * 3600.0 + *minutes * 60.0 + *seconds;
}

// A lone "<" takes the rest of the text with it, a lone ">" goes.
std::string SRTParser::stripHTMLTags(std::string_view text) {
    std::string plain;
    bool isInTag = false;
    for (const char character : text) {
        if (character == '<' || character == '>') {
            isInTag = character == '<';
        } else if (!isInTag) {
            plain += character;
        }
    }
    return plain;
}

} // namespace ondavia
