#include "demo/Catalogue.h"

#include "demo/Mix.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace ondavia::demo {
namespace {

constexpr std::uint64_t channelKey = 0x11;
constexpr std::uint64_t filmKey = 0x22;
constexpr std::uint64_t seriesKey = 0x33;

CategoryRow categoryOf(std::span<const CategoryRow> categories, Genre genre) {
    const auto found = std::ranges::find(categories, genre, &CategoryRow::genre);
    return found == categories.end() ? categories.front() : *found;
}

std::optional<std::size_t> indexOf(std::int64_t id, std::int64_t first, std::size_t count) {
    if (id < first || id >= first + static_cast<std::int64_t>(count)) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(id - first);
}

std::string castOf(std::uint64_t value) {
    const std::size_t count = 3 + value % 3;
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += i == 0 ? "" : ", ";
        text += pick(people(), value / 7 + i * 9);
    }
    return text;
}

std::string plotOf(std::uint64_t value) {
    std::string plot(pick(plotOpenings(), value));
    plot += ' ';
    plot += pick(plotTurns(), value >> 8);
    plot += ' ';
    plot += pick(plotTurns(), (value >> 8) + 1 + (value >> 24) % (plotTurns().size() - 1));
    plot += ' ';
    plot += pick(plotEndings(), value >> 16);
    return plot;
}

/// The name as the provider lists it. Most titles carry the year in brackets, some a quality tag, and a few
/// have the tag after the year, where it hides the year.
std::string listedName(const std::string& title, int year, std::uint64_t value) {
    const std::string bracket = " (" + std::to_string(year) + ")";
    switch (value % 12) {
    case 0:
        return title + " [4K]" + bracket;
    case 1:
        return title + " FHD" + bracket;
    case 2:
        return title + bracket + " [L]";
    case 3:
        return title;
    case 4:
        return "PT | " + title + bracket;
    default:
        return title + bracket;
    }
}

std::optional<int> ratingOf(std::uint64_t value) {
    if (value % 10 == 0) {
        return std::nullopt;
    }
    return static_cast<int>(35 + value / 10 % 60);
}

Picture pictureOf(std::uint64_t value) {
    switch (value % 17) {
    case 3:
        return Picture::absent;
    case 5:
        return Picture::broken;
    default:
        return Picture::present;
    }
}

} // namespace

Catalogue::Catalogue(std::uint64_t seed, std::size_t scale)
    : m_seed(seed)
    , m_channels(scale == 0 ? channelRows().size() : scale / 9)
    , m_films(scale == 0 ? filmRows().size() : scale - scale / 9 - scale * 2 / 9)
    , m_series(scale == 0 ? seriesRows().size() : scale * 2 / 9) {}

ChannelRecord Catalogue::channel(std::size_t index) const {
    const auto rows = channelRows();
    const std::uint64_t value = mix(m_seed ^ channelKey, index);
    ChannelRecord record;
    record.id = firstChannelId + static_cast<std::int64_t>(index);
    record.number = static_cast<std::int64_t>(index) + 1;
    record.picture = pictureOf(value);
    if (index < rows.size()) {
        const ChannelRow& row = rows[index];
        record.name = row.name;
        record.category = categoryOf(liveCategories(), row.genre);
        record.guideId = row.guideId;
        record.archiveDays = row.archiveDays;
        return record;
    }
    static constexpr auto tags = std::to_array<std::string_view>({"FHD", "HD", "SD", "[4K]", "H265"});
    record.name = std::string(pick(titleTails(), value)) + " TV " + std::to_string(index + 1) + ' ' +
                  std::string(pick(tags, value >> 20));
    record.category = pick(liveCategories(), value >> 32);
    record.guideId = "canal." + std::to_string(index + 1) + ".demo";
    record.archiveDays = (value >> 40) % 3 == 0 ? 7 : 0;
    return record;
}

std::string Catalogue::inventTitle(std::size_t index, std::uint64_t key) const {
    const std::uint64_t value = mix(m_seed ^ key, index);
    std::string title(pick(titleNouns(), value >> 3));
    title += ' ';
    title += pick(titleTails(), value >> 24);
    title += ' ';
    title += std::to_string(index + 1);
    return title;
}

TitleRecord Catalogue::describe(TitleRow row, std::size_t index, std::uint64_t key) const {
    const std::uint64_t value = mix(m_seed ^ key, index + 0x1000000);
    TitleRecord record;
    record.number = static_cast<std::int64_t>(index) + 1;
    record.title = row.title;
    record.year = row.year;
    record.name = listedName(record.title, row.year, value >> 7);
    record.plot = plotOf(value >> 11);
    record.cast = castOf(value >> 17);
    record.director = pick(people(), value >> 29);
    record.rating = ratingOf(value >> 33);
    record.minutes = static_cast<int>(value >> 41) % 110 + 40;
    record.extension = (value >> 47) % 3 == 0 ? "mkv" : "mp4";
    record.picture = pictureOf(value >> 50);
    return record;
}

TitleRecord Catalogue::film(std::size_t index) const {
    const std::uint64_t value = mix(m_seed ^ filmKey, index);
    const auto rows = filmRows();
    const std::string invented = index < rows.size() ? std::string() : inventTitle(index, filmKey);
    const TitleRow row = index < rows.size() ? rows[index]
                                             : TitleRow{invented, 1960 + static_cast<int>(value % 66),
                                                        pick(filmCategories(), value >> 30).genre};
    TitleRecord record = describe(row, index, filmKey);
    record.id = firstFilmId + static_cast<std::int64_t>(index);
    record.category = categoryOf(filmCategories(), row.genre);
    if (record.id == longFilmId) {
        record.minutes = longFilmMinutes;
        record.extension = "mp4";
    }
    return record;
}

TitleRecord Catalogue::series(std::size_t index) const {
    const std::uint64_t value = mix(m_seed ^ seriesKey, index);
    const auto rows = seriesRows();
    const std::string invented = index < rows.size() ? std::string() : inventTitle(index, seriesKey);
    const TitleRow row = index < rows.size() ? rows[index]
                                             : TitleRow{invented, 1980 + static_cast<int>(value % 46),
                                                        pick(seriesCategories(), value >> 30).genre};
    TitleRecord record = describe(row, index, seriesKey);
    record.id = firstSeriesId + static_cast<std::int64_t>(index);
    record.category = categoryOf(seriesCategories(), row.genre);
    return record;
}

std::optional<std::size_t> Catalogue::channelIndex(std::int64_t id) const {
    return indexOf(id, firstChannelId, m_channels);
}

std::optional<std::size_t> Catalogue::filmIndex(std::int64_t id) const {
    return indexOf(id, firstFilmId, m_films);
}

std::optional<std::size_t> Catalogue::seriesIndex(std::int64_t id) const {
    return indexOf(id, firstSeriesId, m_series);
}

std::vector<EpisodeRecord> Catalogue::episodes(std::size_t seriesIndex) const {
    const std::uint64_t value = mix(m_seed ^ seriesKey, seriesIndex + 0x2000000);
    const int seasons = 1 + static_cast<int>(value % 4);
    const int perSeason = 6 + static_cast<int>((value >> 8) % 5);
    std::vector<EpisodeRecord> list;
    for (int season = 1; season <= seasons; ++season) {
        for (int number = 1; number <= perSeason; ++number) {
            const auto id =
                (firstSeriesId + static_cast<std::int64_t>(seriesIndex)) * 10000 + season * 100 + number;
            list.push_back({.id = std::to_string(id),
                            .season = season,
                            .number = number,
                            .title = std::string(pick(episodeTitles(), mix(value, list.size()))),
                            .minutes = 40 + static_cast<int>(mix(value, list.size()) % 15)});
        }
    }
    return list;
}

std::optional<std::size_t> Catalogue::seriesOfEpisode(const std::string& episodeId) const {
    std::int64_t id = 0;
    const auto [end, error] = std::from_chars(episodeId.data(), episodeId.data() + episodeId.size(), id);
    if (error != std::errc() || end != episodeId.data() + episodeId.size()) {
        return std::nullopt;
    }
    return seriesIndex(id / 10000);
}

} // namespace ondavia::demo
