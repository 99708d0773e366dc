#pragma once

#include "protocol/wire/TrailingYear.h"

#include <memory>
#include <stdexcept>
#include <unicode/brkiter.h>
#include <unicode/regex.h>
#include <unicode/uchar.h>

namespace ondavia::testing {

/// The same question answered by the regular expression itself, on well-formed UTF-8.
inline std::optional<TrailingYear> trailingYearByRegex(std::string_view title) {
    UErrorCode status = U_ZERO_ERROR;
    static const std::unique_ptr<icu::RegexPattern> pattern(
        icu::RegexPattern::compile(UNICODE_STRING_SIMPLE("\\s*\\((\\d{4})\\)\\s*$"), 0, status));
    const auto text = icu::UnicodeString::fromUTF8({title.data(), static_cast<std::int32_t>(title.size())});
    const std::unique_ptr<icu::RegexMatcher> matcher(pattern->matcher(text, status));
    if (U_FAILURE(status)) {
        throw std::runtime_error(u_errorName(status));
    }
    if (!matcher->find()) {
        return std::nullopt;
    }
    const auto isTrimmed = [](char16_t unit) {
        return unit == '\t' || u_charType(unit) == U_SPACE_SEPARATOR;
    };
    icu::UnicodeString match = matcher->group(status);
    while (!match.isEmpty() && isTrimmed(match[0])) {
        match.remove(0, 1);
    }
    while (!match.isEmpty() && isTrimmed(match[match.length() - 1])) {
        match.truncate(match.length() - 1);
    }
    const std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    characters->setText(match);
    const auto begin = characters->following(0);
    const auto end = characters->preceding(match.length());

    TrailingYear found;
    std::string name;
    text.tempSubString(0, matcher->start(status)).toUTF8String(name);
    found.nameBytes = name.size();
    match.tempSubStringBetween(begin, end).toUTF8String(found.year);
    return found;
}

} // namespace ondavia::testing
