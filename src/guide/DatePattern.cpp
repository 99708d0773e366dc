#include "guide/DatePattern.h"

#include "guide/IcuDates.h"

#include <unicode/smpdtfmt.h>

namespace ondavia {
namespace {

icu::SimpleDateFormat makeFormat(const char* pattern) {
    UErrorCode status = U_ZERO_ERROR;
    icu::SimpleDateFormat format(icu::UnicodeString::fromUTF8(pattern), icu::Locale("en_US_POSIX"), status);
    requireSuccess(status, pattern);
    format.setLenient(false);
    return format;
}

} // namespace

struct DatePattern::Formatter final {
    icu::SimpleDateFormat format;
};

DatePattern::DatePattern(const char* pattern)
    : m_formatter(std::make_unique<const Formatter>(Formatter{makeFormat(pattern)})) {}

DatePattern::~DatePattern() = default;

std::optional<Date> DatePattern::date(std::string_view text) const {
    const auto characters =
        icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
    icu::ParsePosition position;
    const UDate instant = m_formatter->format.parse(characters, position);
    const bool isWhole = position.getErrorIndex() < 0 && position.getIndex() == characters.length();
    return isWhole && !text.empty() ? fromUDate(instant) : std::nullopt;
}

} // namespace ondavia
