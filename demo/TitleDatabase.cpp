#include "demo/TitleDatabase.h"

#include "demo/JsonWriter.h"
#include "demo/Mix.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace ondavia::demo {
namespace {

constexpr std::size_t listSize = 20;
constexpr std::int64_t filmBase = 700000;
constexpr std::int64_t seriesBase = 800000;

/// Popular titles that the provider does not carry.
constexpr auto elsewhere = std::to_array<TitleRow>({
    {"A Torre dos Corvos Brancos", 2025, Genre::action},
    {"Marés Vivas de Outubro", 2024, Genre::drama},
    {"Distrito Neon", 2025, Genre::science},
    {"O Jantar dos Mal-Entendidos", 2024, Genre::comedy},
    {"Cinzas de Verão", 2025, Genre::horror},
});

struct Foreign final {
    std::size_t position;
    std::string_view title;
};

/// Titles that have no translation yet and come in their own script.
constexpr auto untranslated =
    std::to_array<Foreign>({{3, "静かな港"}, {8, "Железный меридиан"}, {11, "별의 신호"}});

std::int64_t baseOf(TitleDatabase::Kind kind) {
    return kind == TitleDatabase::Kind::film ? filmBase : seriesBase;
}

std::string picturePath(TitleDatabase::Kind kind, std::int64_t id) {
    return (kind == TitleDatabase::Kind::film ? "/m" : "/s") + std::to_string(id) + ".jpg";
}

int genreId(Genre genre) {
    return 10 + static_cast<int>(genre);
}

} // namespace

TitleDatabase::Entry TitleDatabase::entry(Kind kind, std::size_t position) const {
    const std::int64_t id = baseOf(kind) + static_cast<std::int64_t>(position);
    const std::size_t count = kind == Kind::film ? m_catalogue.filmCount() : m_catalogue.seriesCount();
    Entry made{.id = id,
               .portuguese = {},
               .english = {},
               .year = 0,
               .genre = Genre::drama,
               .plot = std::string(pick(plotOpenings(), position)) + ' ' +
                       std::string(pick(plotEndings(), position)),
               .minutes = 118,
               .votes = 61 + static_cast<int>(mix(position, baseOf(kind) & 0xFF) % 30)};
    const std::size_t index = position * 2;
    if (position % 4 == 2 || index >= count) {
        const TitleRow& row = elsewhere[position / 4 % elsewhere.size()];
        made.portuguese = made.english = row.title;
        made.year = row.year;
        made.genre = row.genre;
    } else {
        const TitleRecord record = kind == Kind::film ? m_catalogue.film(index) : m_catalogue.series(index);
        made.portuguese = made.english = record.title;
        made.year = record.year;
        made.genre = record.category.genre;
        made.plot = record.plot;
        made.minutes = record.minutes;
    }
    const auto foreign = std::ranges::find(untranslated, position, &Foreign::position);
    if (kind == Kind::film && foreign != untranslated.end()) {
        made.portuguese = foreign->title;
    }
    return made;
}

std::optional<TitleDatabase::Entry> TitleDatabase::entryOf(Kind kind, std::int64_t id) const {
    const std::int64_t position = id - baseOf(kind);
    if (position < 0 || position >= static_cast<std::int64_t>(listSize)) {
        return std::nullopt;
    }
    return entry(kind, static_cast<std::size_t>(position));
}

std::string TitleDatabase::popular(Kind kind, Language language) const {
    std::string out;
    JsonWriter json(out);
    json.beginObject().member("page", 1).key("results").beginArray();
    for (std::size_t i = 0; i < listSize; ++i) {
        const Entry item = entry(kind, i);
        const std::string& title = language == Language::english ? item.english : item.portuguese;
        json.beginObject().member("id", item.id);
        json.member(kind == Kind::film ? "title" : "name", title);
        json.member(kind == Kind::film ? "original_title" : "original_name", item.portuguese);
        i == 17 ? json.key("poster_path").null() : json.member("poster_path", picturePath(kind, item.id));
        json.member("backdrop_path", picturePath(kind, item.id)).member("overview", item.plot);
        json.key("vote_average").tenths(item.votes);
        json.member(kind == Kind::film ? "release_date" : "first_air_date",
                    std::to_string(item.year) + "-04-25");
        json.key("genre_ids").beginArray().number(genreId(item.genre)).endArray().endObject();
    }
    json.endArray()
        .member("total_pages", 1)
        .member("total_results", static_cast<std::int64_t>(listSize))
        .endObject();
    return out;
}

std::optional<std::string> TitleDatabase::details(Kind kind, std::int64_t id) const {
    const auto item = entryOf(kind, id);
    if (!item) {
        return std::nullopt;
    }
    std::string out;
    JsonWriter json(out);
    json.beginObject().member("id", id).member(kind == Kind::film ? "title" : "name", item->portuguese);
    json.member("overview", item->plot).member("poster_path", picturePath(kind, id));
    json.member("backdrop_path", picturePath(kind, id)).key("vote_average").tenths(item->votes);
    json.member(kind == Kind::film ? "release_date" : "first_air_date",
                std::to_string(item->year) + "-04-25");
    if (kind == Kind::film) {
        json.member("runtime", item->minutes);
    } else {
        json.member("number_of_seasons", 2).key("episode_run_time").beginArray().number(45).endArray();
    }
    json.key("genres").beginArray().beginObject().member("id", genreId(item->genre));
    json.member("name", genreText(item->genre)).endObject().endArray();
    json.key("credits").beginObject().key("cast").beginArray();
    for (int order = 0; order < 8; ++order) {
        const std::uint64_t person =
            mix(static_cast<std::uint64_t>(id), static_cast<std::uint64_t>(order)) % people().size();
        json.beginObject()
            .member("id", static_cast<std::int64_t>(person) + 1)
            .member("name", people()[person]);
        json.member("character", pick(people(), person + 13)).key("profile_path");
        order == 6 ? json.null() : json.string("/p" + std::to_string(person) + ".jpg");
        json.member("order", order).endObject();
    }
    json.endArray().endObject().key("videos").beginObject().key("results").beginArray();
    json.beginObject().member("key", "demo-teaser").member("site", "YouTube").member("type", "Teaser");
    json.member("name", "Teaser").endObject();
    if (id % 3 != 0) {
        json.beginObject().member("key", "demo" + std::to_string(id)).member("site", "YouTube");
        json.member("type", "Trailer").member("name", "Trailer oficial").endObject();
    }
    json.endArray().endObject().endObject();
    return out;
}

std::optional<TitleDatabase::Artwork> TitleDatabase::artwork(std::string_view path) const {
    if (path.size() < 3 || path[0] != '/' || (path[1] != 'm' && path[1] != 's')) {
        return std::nullopt;
    }
    std::int64_t id = 0;
    std::from_chars(path.data() + 2, path.data() + path.size(), id);
    const Kind kind = path[1] == 'm' ? Kind::film : Kind::series;
    const auto item = entryOf(kind, id);
    if (!item) {
        return std::nullopt;
    }
    return Artwork{kind, id, item->english};
}

} // namespace ondavia::demo
