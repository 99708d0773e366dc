#pragma once

#include "demo/CatalogueData.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ondavia::demo {

enum class Picture : std::uint8_t {
    present,
    /// The row names no picture.
    absent,
    /// The row names a picture that answers 404.
    broken
};

struct ChannelRecord final {
    std::int64_t id;
    std::int64_t number;
    std::string name;
    CategoryRow category;
    std::string guideId;
    int archiveDays;
    Picture picture;
};

/// A film or a series: what the two have in common on the wire.
struct TitleRecord final {
    std::int64_t id;
    std::int64_t number;
    /// As the provider lists it: tags, year in brackets.
    std::string name;
    /// Without either.
    std::string title;
    int year;
    CategoryRow category;
    std::string plot;
    std::string cast;
    std::string director;
    /// Tenths, 0 to 100; absent where nobody rated it.
    std::optional<int> rating;
    int minutes;
    /// Of a film's file.
    std::string extension;
    Picture picture;
};

struct EpisodeRecord final {
    std::string id;
    int season;
    int number;
    std::string title;
    int minutes;
};

/// The provider's catalogue: a pure function of seed and size, made row by row and never held as a whole.
/// May be used from any thread.
class Catalogue final {
public:
    static constexpr std::int64_t firstChannelId = 1001;
    static constexpr std::int64_t firstFilmId = 100001;
    static constexpr std::int64_t firstSeriesId = 2001;
    /// The film whose file is as long as it says.
    static constexpr std::int64_t longFilmId = 100010;
    static constexpr int longFilmMinutes = 40;

    Catalogue(std::uint64_t seed, std::size_t scale);

    [[nodiscard]] std::size_t channelCount() const { return m_channels; }
    [[nodiscard]] std::size_t filmCount() const { return m_films; }
    [[nodiscard]] std::size_t seriesCount() const { return m_series; }

    [[nodiscard]] ChannelRecord channel(std::size_t index) const;
    [[nodiscard]] TitleRecord film(std::size_t index) const;
    [[nodiscard]] TitleRecord series(std::size_t index) const;

    /// The row of a wire id, absent for an id that the catalogue does not hold.
    [[nodiscard]] std::optional<std::size_t> channelIndex(std::int64_t id) const;
    [[nodiscard]] std::optional<std::size_t> filmIndex(std::int64_t id) const;
    [[nodiscard]] std::optional<std::size_t> seriesIndex(std::int64_t id) const;

    /// All episodes of a series, seasons in order.
    [[nodiscard]] std::vector<EpisodeRecord> episodes(std::size_t seriesIndex) const;
    /// An episode's number within its season, by its id.
    [[nodiscard]] static int episodeNumber(std::int64_t episodeId) {
        return static_cast<int>(episodeId % 100);
    }
    /// The series of an episode id.
    [[nodiscard]] std::optional<std::size_t> seriesOfEpisode(const std::string& episodeId) const;

private:
    [[nodiscard]] TitleRecord describe(TitleRow row, std::size_t index, std::uint64_t key) const;
    [[nodiscard]] std::string inventTitle(std::size_t index, std::uint64_t key) const;

    std::uint64_t m_seed;
    std::size_t m_channels;
    std::size_t m_films;
    std::size_t m_series;
};

} // namespace ondavia::demo
