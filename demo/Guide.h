#pragma once

#include "demo/Catalogue.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace ondavia::demo {

/// Seconds since 1970, UTC.
using UnixTime = std::int64_t;
inline constexpr UnixTime daySeconds = 86400;

UnixTime unixNow();
/// "yyyyMMddHHmmss +hhmm" at the given offset in minutes.
std::string guideTime(UnixTime time, int offsetMinutes);
/// "yyyy-MM-dd HH:mm:ss" in the machine's time zone, as the provider's panel writes it.
std::string wallClock(UnixTime time);
std::string escapeXml(std::string_view text);

struct Programme final {
    UnixTime start;
    UnixTime stop;
    const ProgrammeRow* row;
};

/// What is on when: a pure function of the seed, the channel's guide id and the day, so that two channels
/// with one guide id show the same. May be used from any thread.
class Guide final {
public:
    Guide(const Catalogue& catalogue, std::uint64_t seed)
        : m_catalogue(catalogue)
        , m_seed(seed) {}

    /// Programmes that run at some time from `from` to `until`, in order, without gaps.
    [[nodiscard]] std::vector<Programme> programmes(const ChannelRecord& channel, UnixTime from,
                                                    UnixTime until) const;

    /// The XMLTV document of all channels with a guide id, from two days before `now` to two days after.
    [[nodiscard]] std::string document(UnixTime now) const;

    /// Writes a document of exactly `count` generated programmes. Throws std::runtime_error when the file
    /// cannot be written.
    void writeGenerated(const std::filesystem::path& file, std::size_t count, UnixTime now) const;

private:
    void appendDay(std::vector<Programme>& list, const ChannelRecord& channel, std::int64_t day) const;

    const Catalogue& m_catalogue;
    std::uint64_t m_seed;
};

} // namespace ondavia::demo
