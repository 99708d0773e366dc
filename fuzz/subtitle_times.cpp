#include "FuzzSupport.h"
#include "subtitles/SRTParser.h"

#include <algorithm>
#include <compare>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using ondavia::fuzzing::require;

std::vector<std::string> fieldsOf(const std::string& timestamp) {
    std::vector<std::string> fields(1);
    for (const char character : timestamp) {
        if (character == ':') {
            fields.emplace_back();
        } else {
            fields.back() += character == ',' ? '.' : character;
        }
    }
    return fields;
}

bool isPlainNumber(const std::string& field) {
    constexpr std::size_t digitsOfAnHour = 9;
    return !field.empty() && field.size() <= digitsOfAnHour &&
           std::ranges::all_of(field, [](char character) { return character >= '0' && character <= '9'; });
}

} // namespace

/// The input is one timestamp. The process never leaves the C locale, so that strtod is at hand.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string timestamp(ondavia::fuzzing::textOf(data, size));
    if (timestamp.find_first_of("\r\n \t") != std::string::npos || timestamp.starts_with('\xEF')) {
        return 0;
    }
    const auto cues = ondavia::SRTParser::parse(timestamp + " --> 0:0:1\nx");
    const auto fields = fieldsOf(timestamp);
    if (cues.empty()) {
        require(fields.size() != 3 || !std::ranges::all_of(fields, isPlainNumber), "plain times are read");
        return 0;
    }
    require(fields.size() == 3 && cues.size() == 1, "a time has three fields");
    const double expected = std::strtod(fields[0].c_str(), nullptr) * 3600.0 +
                            std::strtod(fields[1].c_str(), nullptr) * 60.0 +
                            std::strtod(fields[2].c_str(), nullptr);
    require(std::weak_order(cues.front().start, expected) == 0, "the sum of its fields");
    return 0;
}
