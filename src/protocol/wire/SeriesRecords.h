#pragma once

#include "protocol/wire/FlexibleValues.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace ondavia {

struct XtreamSeriesDetail final {
    std::optional<std::string> name;
    std::optional<std::string> cover;
    std::optional<std::string> plot;
    std::optional<std::string> cast;
    std::optional<std::string> director;
    std::optional<std::string> genre;
    std::optional<std::string> releaseDate;
    std::optional<std::string> rating;
    std::optional<std::vector<std::string>> backdropPath;
    std::optional<std::string> youtubeTrailer;

    bool operator==(const XtreamSeriesDetail&) const = default;
};

struct XtreamSeason final {
    std::optional<std::string> airDate;
    std::optional<std::int64_t> episodeCount;
    std::optional<std::int64_t> id;
    std::optional<std::string> name;
    std::optional<std::string> overview;
    std::optional<std::int64_t> seasonNumber;
    std::optional<std::string> cover;
    std::optional<std::string> coverBig;

    bool operator==(const XtreamSeason&) const = default;
};

/// Its date key is all lower case, unlike those of the other two records that carry one.
struct XtreamEpisodeInfo final {
    std::optional<std::string> movieImage;
    std::optional<std::string> plot;
    std::optional<std::string> releaseDate;
    FlexibleString _rating;
    std::optional<std::string> duration;
    std::optional<std::int64_t> durationSecs;
    std::optional<std::int64_t> bitrate;
    std::optional<std::string> coverBig;

    [[nodiscard]] const std::optional<std::string>& rating() const { return _rating.value; }

    bool operator==(const XtreamEpisodeInfo&) const = default;
};

struct XtreamEpisode final {
    std::optional<std::string> id;
    FlexibleInt _episodeNum;
    std::optional<std::string> title;
    std::optional<std::string> containerExtension;
    std::optional<XtreamEpisodeInfo> info;
    std::optional<std::vector<std::string>> subtitles;
    std::optional<std::int64_t> season;

    [[nodiscard]] const std::optional<std::int64_t>& episodeNum() const { return _episodeNum.value; }

    bool operator==(const XtreamEpisode&) const = default;
};

/// Episodes under their season key: the season's number where the server sent an object, the 0-based
/// position in decimal where it sent a list.
using XtreamEpisodeMap = std::map<std::string, std::vector<XtreamEpisode>>;

/// Reply of `get_series_info`. Malformed episodes leave `episodes` absent and the rest valid; a
/// malformed season or detail fails the reply.
struct XtreamSeriesInfo final {
    std::optional<std::vector<XtreamSeason>> seasons;
    std::optional<XtreamSeriesDetail> info;
    std::optional<XtreamEpisodeMap> episodes;

    bool operator==(const XtreamSeriesInfo&) const = default;
};

} // namespace ondavia
