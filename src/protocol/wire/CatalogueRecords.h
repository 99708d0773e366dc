#pragma once

#include "protocol/wire/FlexibleValues.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ondavia {

/// Row of the three category lists. A row without id or name fails its whole list.
struct XtreamCategory final {
    std::string categoryId;
    std::string categoryName;
    std::optional<std::int64_t> parentId;

    bool operator==(const XtreamCategory&) const = default;
};

/// Row of `get_live_streams`.
struct XtreamLiveStream final {
    std::optional<std::int64_t> num;
    std::optional<std::string> name;
    std::optional<std::string> streamType;
    std::optional<std::int64_t> streamId;
    std::optional<std::string> streamIcon;
    std::optional<std::string> epgChannelId;
    std::optional<std::string> added;
    /// "1" for adult.
    std::optional<std::string> isAdult;
    std::optional<std::string> categoryId;
    std::optional<std::vector<std::int64_t>> categoryIds;
    /// 1 for catch-up.
    std::optional<std::int64_t> tvArchive;
    std::optional<std::string> directSource;
    /// Days of catch-up.
    std::optional<std::int64_t> tvArchiveDuration;

    bool operator==(const XtreamLiveStream&) const = default;
};

/// Row of `get_vod_streams`. Fields with an underscore are read through the accessor of the same name.
struct XtreamVodStream final {
    std::optional<std::int64_t> num;
    std::optional<std::string> name;
    std::optional<std::string> streamType;
    std::optional<std::int64_t> streamId;
    std::optional<std::string> streamIcon;
    FlexibleString _rating;
    FlexibleString _ratingFive;
    std::optional<std::string> added;
    /// "1" for adult.
    std::optional<std::string> isAdult;
    std::optional<std::string> categoryId;
    std::optional<std::vector<std::int64_t>> categoryIds;
    std::optional<std::string> containerExtension;
    std::optional<std::string> directSource;
    std::optional<std::string> plot;
    std::optional<std::string> cast;
    std::optional<std::string> director;
    std::optional<std::string> genre;
    FlexibleString _year;
    FlexibleString _releaseDate;
    FlexibleString _youtubeTrailer;
    FlexibleString _episodeRunTime;

    [[nodiscard]] const std::optional<std::string>& rating() const { return _rating.value; }
    [[nodiscard]] const std::optional<std::string>& ratingFive() const { return _ratingFive.value; }
    [[nodiscard]] const std::optional<std::string>& year() const { return _year.value; }
    [[nodiscard]] const std::optional<std::string>& releaseDate() const { return _releaseDate.value; }
    [[nodiscard]] const std::optional<std::string>& youtubeTrailer() const { return _youtubeTrailer.value; }
    /// Minutes as text.
    [[nodiscard]] const std::optional<std::string>& episodeRunTime() const { return _episodeRunTime.value; }

    bool operator==(const XtreamVodStream&) const = default;
};

/// Row of `get_series`. Its release date has a key in camel case, unlike the movie's.
struct XtreamSeriesItem final {
    std::optional<std::int64_t> num;
    std::optional<std::string> name;
    std::optional<std::int64_t> seriesId;
    std::optional<std::string> cover;
    std::optional<std::string> plot;
    std::optional<std::string> cast;
    std::optional<std::string> director;
    std::optional<std::string> genre;
    std::optional<std::string> releaseDate;
    std::optional<std::string> lastModified;
    FlexibleString _rating;
    FlexibleString _ratingFive;
    std::optional<std::vector<std::string>> backdropPath;
    std::optional<std::string> youtubeTrailer;
    std::optional<std::string> categoryId;
    std::optional<std::vector<std::int64_t>> categoryIds;

    [[nodiscard]] const std::optional<std::string>& rating() const { return _rating.value; }
    [[nodiscard]] const std::optional<std::string>& ratingFive() const { return _ratingFive.value; }

    bool operator==(const XtreamSeriesItem&) const = default;
};

/// The action whose reply is a list of such rows.
template<class Row> inline constexpr std::string_view listAction = {};
template<> inline constexpr std::string_view listAction<XtreamLiveStream> = "get_live_streams";
template<> inline constexpr std::string_view listAction<XtreamVodStream> = "get_vod_streams";
template<> inline constexpr std::string_view listAction<XtreamSeriesItem> = "get_series";

} // namespace ondavia
