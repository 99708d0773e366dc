#include "demo/JsonWriter.h"
#include "demo/Replies.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace ondavia::demo {
namespace {

std::string durationText(int minutes) {
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d:00", minutes / 60, minutes % 60);
    return text.data();
}

void writeSeason(JsonWriter& json, const TitleRecord& series, int season, std::int64_t episodes,
                 const std::string& cover) {
    json.beginObject().member("air_date", std::to_string(series.year + season - 1) + "-09-15");
    json.member("episode_count", episodes).member("id", series.id * 100 + season);
    json.member("name", "Temporada " + std::to_string(season)).member("overview", series.plot);
    json.member("season_number", season).member("cover", cover).member("cover_big", cover).endObject();
}

void writeEpisode(JsonWriter& json, const TitleRecord& series, const EpisodeRecord& episode,
                  const std::string& baseUrl) {
    const std::string still = baseUrl + "/pictures/still/" + episode.id + ".jpg";
    json.beginObject().member("id", episode.id).key("episode_num");
    episode.number % 2 == 0 ? json.number(episode.number) : json.string(std::to_string(episode.number));
    json.member("title", series.title + " - S0" + std::to_string(episode.season) + "E" +
                             (episode.number < 10 ? "0" : "") + std::to_string(episode.number) + " - " +
                             episode.title);
    json.member("container_extension", "mp4").key("info").beginObject().member("movie_image", still);
    json.member("plot", series.plot)
        .member("releasedate", std::to_string(series.year + episode.season - 1) + "-10-01");
    json.key("rating");
    episode.number % 3 == 0 ? json.string("7.4") : json.tenths(81);
    json.member("duration", durationText(episode.minutes)).member("duration_secs", episode.minutes * 60);
    json.member("bitrate", 620).member("cover_big", still).endObject();
    json.key("subtitles").beginArray();
    // Some episodes have none, so that going on to them shows that those of the one before go.
    if (episode.number % 4 != 0) {
        for (const char* language : {".por.srt", ".eng.srt"}) {
            json.string(baseUrl + "/subtitles/" + episode.id + language);
        }
    }
    json.endArray().member("season", episode.season).endObject();
}

} // namespace

std::string Replies::seriesInfo(std::size_t index, EpisodesShape shape) const {
    const TitleRecord series = m_catalogue.series(index);
    const auto episodes = m_catalogue.episodes(index);
    const std::string cover = pictureUrl(series.picture, "/pictures/series/", series.id);
    const int seasons = episodes.back().season;
    std::string out;
    JsonWriter json(out, JsonText::escaped);
    json.beginObject().key("seasons").beginArray();
    for (int season = 1; season <= seasons; ++season) {
        writeSeason(json, series, season, std::ranges::count(episodes, season, &EpisodeRecord::season),
                    cover);
    }
    json.endArray().key("info").beginObject().member("name", series.name).member("cover", cover);
    json.member("plot", series.plot).member("cast", series.cast).member("director", series.director);
    json.member("genre", genreText(series.category.genre));
    json.member("releaseDate", std::to_string(series.year) + "-09-15");
    json.member("rating", series.rating ? std::to_string(*series.rating / 10) : std::string());
    json.key("backdrop_path")
        .beginArray()
        .string(pictureUrl(Picture::present, "/pictures/backdrop/", series.id));
    json.endArray().member("youtube_trailer", "").endObject().key("episodes");
    // The list shape counts from 0, and season 0 (specials) is empty here.
    shape == EpisodesShape::object ? json.beginObject() : json.beginArray().null();
    for (int season = 1; season <= seasons; ++season) {
        if (shape == EpisodesShape::object) {
            json.key(std::to_string(season));
        }
        json.beginArray();
        for (const EpisodeRecord& episode : episodes) {
            if (episode.season == season) {
                writeEpisode(json, series, episode, m_baseUrl);
            }
        }
        json.endArray();
    }
    shape == EpisodesShape::object ? json.endObject() : json.endArray();
    json.endObject();
    return out;
}

} // namespace ondavia::demo
