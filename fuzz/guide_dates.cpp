#include "FuzzSupport.h"

#include "guide/XMLTVDateFormatter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static ondavia::XMLTVDateFormatter dates;
    const std::string_view text = ondavia::fuzzing::textOf(data, size);
    ondavia::fuzzing::require(dates.date(text) == dates.byPattern(text),
                              "a date is the same with and without the fast path");
    return 0;
}
