#pragma once

#include "entities/EPGProgram.h"
#include "guide/XMLTVParser.h"

#include <chrono>
#include <string>
#include <string_view>
#include <vector>
#include <zlib.h>

namespace ondavia::testing {

inline Date utc(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, int second = 0) {
    return std::chrono::sys_days(std::chrono::year(year) / static_cast<int>(month) / static_cast<int>(day)) +
           std::chrono::hours(hour) + std::chrono::minutes(minute) + std::chrono::seconds(second);
}

inline std::string xmltv(const std::string& body) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<tv>\n" + body + "</tv>\n";
}

inline const std::string validTimes = "start=\"20240115120000 +0000\" stop=\"20240115130000 +0000\"";

/// A programme with valid times around `children`.
inline std::string programme(const std::string& children, const std::string& channel = "c1") {
    return "<programme " + validTimes + " channel=\"" + channel + "\">" + children + "</programme>\n";
}

/// The programmes of `document`, fed `step` bytes at a time (0: all at once).
inline std::vector<EPGProgram> parsed(std::string_view document, std::size_t step = 0) {
    std::vector<EPGProgram> programs;
    XMLTVParser parser([&programs](std::vector<EPGProgram>&& batch) {
        programs.insert(programs.end(), batch.begin(), batch.end());
    });
    while (!document.empty()) {
        const std::string_view piece = document.substr(0, step == 0 ? document.size() : step);
        parser.feed(piece);
        document.remove_prefix(piece.size());
    }
    parser.finish();
    return programs;
}

inline std::vector<std::string> titlesOf(const std::vector<EPGProgram>& programs) {
    std::vector<std::string> titles;
    for (const EPGProgram& program : programs) {
        titles.push_back(program.title);
    }
    return titles;
}

inline std::string gzipped(std::string_view text) {
    z_stream stream{};
    deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    std::string out(deflateBound(&stream, text.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

} // namespace ondavia::testing
