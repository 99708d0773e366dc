#pragma once

#include "base/Date.h"

#include <cstdint>
#include <optional>
#include <string>

namespace ondavia {

/// One catalogue item of any kind: a live stream, a movie, a series, or an episode built on demand.
///
/// The id is made of the provider's stable ids only, which is what keeps favourites and history
/// attached when a synchronisation deletes and re-creates every row:
///
/// | item        | id                                       |
/// |-------------|------------------------------------------|
/// | live, movie | playlist id, "_", stream id              |
/// | series      | playlist id, "_series_", series id       |
/// | episode     | id of the series, "_ep_", episode id     |
struct Channel final {
    std::string id;
    std::string playlistId;
    std::int64_t streamId = 0;
    std::int64_t num = 0;
    std::string name;
    /// "live", "movie" or "series"; an episode has "series" too.
    std::string type;
    std::string groupTitle;
    std::optional<std::string> logo;
    /// Empty for a series, which has no stream of its own.
    std::string url;
    std::optional<std::int64_t> seriesId;
    std::optional<std::string> seriesName;
    std::optional<std::int64_t> seasonNum;
    std::optional<std::int64_t> episodeNum;
    std::optional<std::string> episodeTitle;
    std::optional<std::string> plot;
    std::optional<std::string> cast;
    std::optional<std::string> director;
    std::optional<std::string> genre;
    std::optional<std::string> rating;
    std::optional<std::string> year;
    std::optional<std::string> backdrop;
    std::optional<std::string> youtubeTrailer;
    std::optional<std::string> releaseDate;
    /// Ready to show, such as 1h 05m.
    std::optional<std::string> duration;
    std::optional<std::string> containerExtension;
    bool adult = false;
    std::optional<std::string> epgChannelId;
    std::optional<std::string> tvgName;
    std::optional<std::string> tvgChno;
    bool tvArchive = false;
    /// Days of catch-up.
    std::int64_t tvArchiveDuration = 0;
    Date addedAt{};
    std::optional<Date> lastAccessedAt;

    bool operator==(const Channel&) const = default;
};

} // namespace ondavia
