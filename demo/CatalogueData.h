#pragma once

#include <cstdint>
#include <span>
#include <string_view>

/// The tables that the catalogue is made of. Every name in them is invented.
namespace ondavia::demo {

enum class Genre : std::uint8_t {
    general,
    news,
    sport,
    cinema,
    documentary,
    kids,
    music,
    international,
    adult,
    action,
    drama,
    comedy,
    science,
    horror,
    portuguese
};

struct CategoryRow final {
    int id;
    std::string_view name;
    Genre genre;
};

struct ChannelRow final {
    std::string_view name;
    Genre genre;
    /// Empty where the channel has no guide.
    std::string_view guideId;
    int archiveDays;
};

struct TitleRow final {
    std::string_view title;
    int year;
    Genre genre;
};

struct ProgrammeRow final {
    Genre genre;
    std::string_view title;
    std::string_view category;
    int minutes;
    std::string_view description;
};

std::span<const CategoryRow> liveCategories();
std::span<const CategoryRow> filmCategories();
std::span<const CategoryRow> seriesCategories();
std::span<const ChannelRow> channelRows();
std::span<const TitleRow> filmRows();
std::span<const TitleRow> seriesRows();
std::span<const ProgrammeRow> programmeRows();
std::span<const std::string_view> people();
std::span<const std::string_view> plotOpenings();
std::span<const std::string_view> plotTurns();
std::span<const std::string_view> plotEndings();
std::span<const std::string_view> titleNouns();
std::span<const std::string_view> titleTails();
std::span<const std::string_view> episodeTitles();
/// "Drama, Romance" and so on, as the catalogue shows it.
std::string_view genreText(Genre genre);

} // namespace ondavia::demo
