#pragma once

#include "base/Date.h"

#include <memory>
#include <optional>
#include <string_view>

namespace ondavia {

/// Reads dates by an ICU pattern in the locale "en_US_POSIX", never leniently. Texts without an offset are
/// read in the device's time zone. Costly to build and reused for that reason. One thread at a time.
class DatePattern final {
public:
    explicit DatePattern(const char* pattern);
    ~DatePattern();
    DatePattern(const DatePattern&) = delete;
    DatePattern& operator=(const DatePattern&) = delete;

    /// The instant that the whole of `text` stands for.
    [[nodiscard]] std::optional<Date> date(std::string_view text) const;

private:
    struct Formatter;
    std::unique_ptr<const Formatter> m_formatter;
};

} // namespace ondavia
