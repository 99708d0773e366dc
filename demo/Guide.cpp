#include "demo/Guide.h"

#include "demo/Mix.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>

namespace ondavia::demo {
namespace {

/// The programmes that fit a channel; channels of a genre without its own show the general ones.
std::vector<const ProgrammeRow*> rowsOf(Genre genre) {
    std::vector<const ProgrammeRow*> rows;
    for (const ProgrammeRow& row : programmeRows()) {
        if (row.genre == genre) {
            rows.push_back(&row);
        }
    }
    return rows.empty() ? rowsOf(Genre::general) : rows;
}

std::uint64_t textKey(std::string_view text) {
    std::uint64_t key = 0;
    for (const char c : text) {
        key = mix(key, static_cast<unsigned char>(c));
    }
    return key;
}

std::tm utcParts(UnixTime time) {
    const std::time_t value = time;
    std::tm parts{};
    gmtime_r(&value, &parts);
    return parts;
}

} // namespace

UnixTime unixNow() {
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

std::string guideTime(UnixTime time, int offsetMinutes) {
    const std::tm parts = utcParts(time + offsetMinutes * 60);
    std::array<char, 64> text{};
    const int length = std::snprintf(text.data(), text.size(), "%04d%02d%02d%02d%02d%02d %c%02d%02d",
                                     parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
                                     parts.tm_min, parts.tm_sec, offsetMinutes < 0 ? '-' : '+',
                                     std::abs(offsetMinutes) / 60, std::abs(offsetMinutes) % 60);
    return {text.data(), static_cast<std::size_t>(length)};
}

std::string wallClock(UnixTime time) {
    const std::time_t value = time;
    std::tm parts{};
    localtime_r(&value, &parts);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts);
    return {text.data(), length};
}

std::string escapeXml(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

void Guide::appendDay(std::vector<Programme>& list, const ChannelRecord& channel, std::int64_t day) const {
    const auto rows = rowsOf(channel.category.genre);
    const std::uint64_t key = mix(m_seed ^ textKey(channel.guideId), static_cast<std::uint64_t>(day));
    const UnixTime end = (day + 1) * daySeconds;
    std::size_t position = key % rows.size();
    for (UnixTime start = day * daySeconds; start < end;) {
        const ProgrammeRow* row = rows[position % rows.size()];
        const UnixTime stop = std::min(end, start + row->minutes * 60);
        list.push_back({start, stop, row});
        start = stop;
        position += 1 + (mix(key, list.size()) % 4 == 0 ? 1 : 0);
    }
}

std::vector<Programme> Guide::programmes(const ChannelRecord& channel, UnixTime from, UnixTime until) const {
    std::vector<Programme> list;
    for (std::int64_t day = from / daySeconds; day * daySeconds < until; ++day) {
        appendDay(list, channel, day);
    }
    std::erase_if(
        list, [&](const Programme& programme) { return programme.stop <= from || programme.start >= until; });
    return list;
}

} // namespace ondavia::demo
