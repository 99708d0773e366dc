#pragma once

#include "base/Date.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ondavia {

/// The guide's days and times in words, in the time zone that the device has when the object is made. Costly
/// to build and kept for that reason. One thread at a time.
class DayTexts final {
public:
    DayTexts();
    ~DayTexts();
    DayTexts(const DayTexts&) = delete;
    DayTexts& operator=(const DayTexts&) = delete;

    /// "21:05".
    [[nodiscard]] std::string clockText(Date time) const;
    /// "Segunda-Feira, 02/03", and that it is today where `now` lies in the same day.
    [[nodiscard]] std::string dayText(Date day, Date now) const;

private:
    struct Formatters;
    std::unique_ptr<const Formatters> m_formatters;
};

} // namespace ondavia
