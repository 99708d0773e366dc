#include "FuzzSupport.h"

#include "guide/XMLTVDateFormatter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static ondavia::XMLTVDateFormatter dates;
    const std::string_view text = ondavia::fuzzing::textOf(data, size);
    const auto read = dates.byPattern(text);
    const auto common = ondavia::XMLTVDateFormatter::commonForm(text);
    ondavia::fuzzing::require(!common || common == read, "a date is the same with and without the fast path");
    return 0;
}
