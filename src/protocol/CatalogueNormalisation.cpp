#include "base/LocalizedText.h"
#include "base/Text.h"
#include "protocol/XtreamAPIClient.h"
#include "protocol/wire/TrailingYear.h"

namespace ondavia {
namespace {

constexpr std::int64_t minutesPerHour = 60;

/// Fills what all three lists share.
class ChannelBuilder final {
public:
    ChannelBuilder(const std::string& playlistId, const CategoryMap& categoryMap)
        : m_playlistId(playlistId)
        , m_categoryMap(categoryMap) {}

    /// `separator` stands between playlist id and provider id. `row` has a name.
    template<class Row>
    [[nodiscard]] Channel build(Row& row, std::int64_t id, std::string_view separator,
                                std::string_view type) const {
        Channel channel;
        channel.id = m_playlistId + std::string(separator) + std::to_string(id);
        channel.playlistId = m_playlistId;
        channel.streamId = id;
        channel.num = row.num.value_or(0);
        channel.name = std::move(*row.name);
        channel.type = type;
        channel.groupTitle = groupTitle(row.categoryId.value_or(std::string()));
        channel.addedAt = m_now;
        return channel;
    }

private:
    [[nodiscard]] const std::string& groupTitle(const std::string& categoryId) const {
        const auto found = m_categoryMap.find(categoryId);
        return found == m_categoryMap.end() ? m_withoutCategory : found->second;
    }

    const std::string& m_playlistId;
    const CategoryMap& m_categoryMap;
    const std::string m_withoutCategory = localizedText("category.none", "Sem Categoria");
    const Date m_now = currentDate();
};

/// Cuts a year in brackets off the end of the name; absent when there is none.
std::optional<std::string> takeTrailingYear(std::string& name) {
    auto found = findTrailingYear(name);
    if (!found) {
        return std::nullopt;
    }
    name.resize(found->nameBytes);
    return std::move(found->year);
}

template<class Row> void moveDescription(Row& row, Channel& channel) {
    channel.plot = std::move(row.plot);
    channel.cast = std::move(row.cast);
    channel.director = std::move(row.director);
    channel.genre = std::move(row.genre);
    channel.rating = std::move(row._rating.value);
}

/// Minutes as they are shown. What isn't a number of minutes stays as the provider wrote it.
std::optional<std::string> shownDuration(std::optional<std::string> runTime) {
    const auto minutes = runTime ? parseDecimalInteger(*runTime) : std::nullopt;
    if (!minutes || *minutes < 1) {
        return runTime;
    }
    const std::string rest = std::to_string(*minutes % minutesPerHour);
    if (*minutes < minutesPerHour) {
        return rest + "m";
    }
    return std::to_string(*minutes / minutesPerHour) + "h " + (rest.size() < 2 ? "0" : "") + rest + "m";
}

std::optional<std::string> yearOfDate(const std::optional<std::string>& date) {
    constexpr int yearCharacters = 4;
    const auto year = date ? firstCharacters(*date, yearCharacters) : std::nullopt;
    return year ? std::optional<std::string>(*year) : std::nullopt;
}

} // namespace

std::vector<Channel> XtreamAPIClient::normalizeLiveStreams(std::span<XtreamLiveStream> rows,
                                                           const std::string& playlistId,
                                                           const CategoryMap& categoryMap) const {
    const ChannelBuilder builder(playlistId, categoryMap);
    std::vector<Channel> channels;
    channels.reserve(rows.size());
    for (XtreamLiveStream& row : rows) {
        if (!row.streamId || !row.name) {
            continue;
        }
        Channel& channel = channels.emplace_back(builder.build(row, *row.streamId, "_", "live"));
        channel.logo = std::move(row.streamIcon);
        channel.url = getLiveStreamURL(*row.streamId);
        channel.adult = row.isAdult == "1";
        channel.epgChannelId = std::move(row.epgChannelId);
        channel.tvArchive = row.tvArchive == 1;
        channel.tvArchiveDuration = row.tvArchiveDuration.value_or(0);
    }
    return channels;
}

std::vector<Channel> XtreamAPIClient::normalizeVodStreams(std::span<XtreamVodStream> rows,
                                                          const std::string& playlistId,
                                                          const CategoryMap& categoryMap) const {
    const ChannelBuilder builder(playlistId, categoryMap);
    std::vector<Channel> channels;
    channels.reserve(rows.size());
    for (XtreamVodStream& row : rows) {
        if (!row.streamId || !row.name) {
            continue;
        }
        Channel& channel = channels.emplace_back(builder.build(row, *row.streamId, "_", "movie"));
        moveDescription(row, channel);
        channel.year = takeTrailingYear(channel.name);
        if (!channel.year) {
            channel.year = std::move(row._year.value);
        }
        channel.logo = std::move(row.streamIcon);
        channel.containerExtension = std::move(row.containerExtension).value_or("mp4");
        channel.url = getMovieStreamURL(*row.streamId, *channel.containerExtension);
        channel.youtubeTrailer = std::move(row._youtubeTrailer.value);
        channel.releaseDate = std::move(row._releaseDate.value);
        channel.duration = shownDuration(std::move(row._episodeRunTime.value));
        channel.adult = row.isAdult == "1";
    }
    return channels;
}

std::vector<Channel> XtreamAPIClient::normalizeSeriesList(std::span<XtreamSeriesItem> rows,
                                                          const std::string& playlistId,
                                                          const CategoryMap& categoryMap) const {
    const ChannelBuilder builder(playlistId, categoryMap);
    std::vector<Channel> channels;
    channels.reserve(rows.size());
    for (XtreamSeriesItem& row : rows) {
        if (!row.seriesId || !row.name) {
            continue;
        }
        Channel& channel = channels.emplace_back(builder.build(row, *row.seriesId, "_series_", "series"));
        moveDescription(row, channel);
        channel.year = takeTrailingYear(channel.name);
        if (!channel.year) {
            channel.year = yearOfDate(row.releaseDate);
        }
        channel.logo = std::move(row.cover);
        channel.seriesId = row.seriesId;
        if (row.backdropPath && !row.backdropPath->empty()) {
            channel.backdrop = std::move(row.backdropPath->front());
        }
        channel.youtubeTrailer = std::move(row.youtubeTrailer);
        channel.releaseDate = std::move(row.releaseDate);
    }
    return channels;
}

} // namespace ondavia
