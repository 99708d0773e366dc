#include "FuzzSupport.h"
#include "base/Text.h"
#include "protocol/TrailingYearReference.h"

/// Titles come out of the decoder, so they are well-formed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view title = ondavia::fuzzing::textOf(data, size);
    const auto found = ondavia::findTrailingYear(title);
    if (ondavia::isValidUtf8(title)) {
        ondavia::fuzzing::require(found == ondavia::testing::trailingYearByRegex(title),
                                  "the regular expression agrees");
    }
    return 0;
}
