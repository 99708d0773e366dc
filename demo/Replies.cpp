#include "demo/Replies.h"

#include "demo/JsonWriter.h"
#include "demo/Mix.h"

#include <QByteArray>

#include <algorithm>

namespace ondavia::demo {
namespace {

constexpr UnixTime addedBase = 1700000000;

std::string addedText(std::int64_t number) {
    return std::to_string(addedBase + number * 3600);
}

/// Servers disagree on how they write a rating: as a number, as text, as an empty text, as null.
void writeRating(JsonWriter& json, const TitleRecord& title) {
    if (!title.rating) {
        title.number % 2 == 0 ? json.member("rating", "") : json.key("rating").null();
        json.member("rating_5based", 0);
        return;
    }
    json.key("rating");
    if (title.number % 2 == 0) {
        json.tenths(*title.rating);
    } else {
        json.string(std::to_string(*title.rating / 10) + '.' + std::to_string(*title.rating % 10));
    }
    json.key("rating_5based").tenths(*title.rating / 2);
}

void writeCategory(JsonWriter& json, const CategoryRow& category) {
    json.member("category_id", std::to_string(category.id));
    json.key("category_ids").beginArray().number(category.id).endArray();
}

void writePeople(JsonWriter& json, const TitleRecord& title) {
    json.member("plot", title.plot).member("cast", title.cast).member("director", title.director);
    json.member("genre", genreText(title.category.genre));
}

std::string releaseDate(const TitleRecord& title) {
    return std::to_string(title.year) + "-0" + std::to_string(title.number % 9 + 1) + "-1" +
           std::to_string(title.number % 10);
}

void writeFilm(JsonWriter& json, const TitleRecord& film, const std::string& picture,
               const std::string& backdrop) {
    json.beginObject().member("num", film.number).member("name", film.name).member("title", film.title);
    json.member("stream_type", "movie").member("stream_id", film.id).member("stream_icon", picture);
    writeRating(json, film);
    json.member("added", addedText(film.number));
    json.member("is_adult", film.category.genre == Genre::adult ? "1" : "0");
    writeCategory(json, film.category);
    json.member("container_extension", film.extension).member("custom_sid", "").member("direct_source", "");
    writePeople(json, film);
    json.key("year");
    film.number % 3 == 0 ? json.number(film.year) : json.string(std::to_string(film.year));
    json.member("release_date", releaseDate(film));
    json.key("backdrop_path").beginArray().string(backdrop).endArray();
    film.number % 5 == 0 ? json.key("youtube_trailer").null() : json.member("youtube_trailer", "");
    json.key("episode_run_time");
    film.number % 4 == 0 ? json.number(film.minutes) : json.string(std::to_string(film.minutes));
    json.endObject();
}

std::string base64(std::string_view text) {
    return QByteArray::fromRawData(text.data(), static_cast<qsizetype>(text.size())).toBase64().toStdString();
}

} // namespace

std::string Replies::refusal() {
    return R"({"user_info":{"auth":0}})";
}

std::string Replies::login(const AccountState& account) {
    const UnixTime now = unixNow();
    std::string out;
    JsonWriter json(out);
    json.beginObject().key("user_info").beginObject();
    json.member("username", account.user).member("password", account.password);
    json.member("message", "Bem-vindo à demonstração").member("auth", 1);
    json.member("status", account.expires && *account.expires < now ? "Expired" : "Active").key("exp_date");
    if (!account.expires) {
        json.null();
    } else if (account.expiry == AccountState::Expiry::asNumber) {
        json.number(*account.expires);
    } else {
        json.string(std::to_string(*account.expires));
    }
    json.member("is_trial", "0").member("active_cons", std::to_string(account.openStreams));
    json.member("created_at", std::to_string(addedBase));
    json.member("max_connections", std::to_string(account.maxConnections));
    json.key("allowed_output_formats").beginArray().string("m3u8").string("ts").endArray().endObject();
    json.key("server_info")
        .beginObject()
        .member("url", "127.0.0.1")
        .member("port", std::to_string(account.port));
    json.member("https_port", "0").member("server_protocol", "http").member("rtmp_port", "0");
    json.member("timezone", "Europe/Lisbon").member("timestamp_now", now).member("time_now", wallClock(now));
    json.endObject().endObject();
    return out;
}

std::string Replies::categories(std::span<const CategoryRow> rows) {
    std::string out;
    JsonWriter json(out);
    json.beginArray();
    for (const CategoryRow& row : rows) {
        json.beginObject().member("category_id", std::to_string(row.id)).member("category_name", row.name);
        json.member("parent_id", 0).endObject();
    }
    json.endArray();
    return out;
}

std::string Replies::pictureUrl(Picture picture, std::string_view path, std::int64_t id) const {
    if (picture == Picture::absent) {
        return {};
    }
    const std::string_view folder = picture == Picture::broken ? "/pictures/missing/" : path;
    return m_baseUrl + std::string(folder) + std::to_string(id) +
           (path == "/pictures/logo/" ? ".png" : ".jpg");
}

std::string Replies::liveStreams() const {
    std::string out;
    out.reserve(m_catalogue.channelCount() * 560);
    JsonWriter json(out);
    json.beginArray();
    for (std::size_t i = 0; i < m_catalogue.channelCount(); ++i) {
        const ChannelRecord channel = m_catalogue.channel(i);
        json.beginObject().member("num", channel.number).member("name", channel.name);
        json.member("stream_type", "live").member("stream_id", channel.id);
        json.member("stream_icon", pictureUrl(channel.picture, "/pictures/logo/", channel.id))
            .key("epg_channel_id");
        channel.guideId.empty() ? json.null() : json.string(channel.guideId);
        json.member("added", addedText(channel.number));
        json.member("is_adult", channel.category.genre == Genre::adult ? "1" : "0");
        writeCategory(json, channel.category);
        json.member("custom_sid", "").member("tv_archive", channel.archiveDays > 0 ? 1 : 0);
        json.member("direct_source", "").member("tv_archive_duration", channel.archiveDays).endObject();
    }
    json.endArray();
    return out;
}

std::string Replies::films() const {
    std::string out;
    out.reserve(m_catalogue.filmCount() * 1100);
    JsonWriter json(out);
    json.beginArray();
    for (std::size_t i = 0; i < m_catalogue.filmCount(); ++i) {
        const TitleRecord film = m_catalogue.film(i);
        writeFilm(json, film, pictureUrl(film.picture, "/pictures/film/", film.id),
                  pictureUrl(Picture::present, "/pictures/backdrop/", film.id));
    }
    json.endArray();
    return out;
}

std::string Replies::series() const {
    std::string out;
    out.reserve(m_catalogue.seriesCount() * 1200);
    JsonWriter json(out, JsonText::escaped);
    json.beginArray();
    for (std::size_t i = 0; i < m_catalogue.seriesCount(); ++i) {
        const TitleRecord row = m_catalogue.series(i);
        json.beginObject().member("num", row.number).member("name", row.name).member("series_id", row.id);
        json.member("cover", pictureUrl(row.picture, "/pictures/series/", row.id));
        writePeople(json, row);
        json.member("releaseDate", releaseDate(row)).member("last_modified", addedText(row.number));
        writeRating(json, row);
        json.key("backdrop_path").beginArray();
        if (row.picture != Picture::absent) {
            json.string(pictureUrl(row.picture, "/pictures/backdrop/", row.id));
        }
        json.endArray().member("youtube_trailer", "").member("episode_run_time", std::to_string(row.minutes));
        writeCategory(json, row.category);
        json.endObject();
    }
    json.endArray();
    return out;
}

std::string Replies::filmInfo(std::size_t index) const {
    const TitleRecord film = m_catalogue.film(index);
    const std::string id = std::to_string(film.id);
    const std::string srt = "/subtitles/" + id + ".por.srt";
    const std::string vtt = m_baseUrl + "/subtitles/" + id + ".eng.vtt";
    std::string out;
    JsonWriter json(out);
    json.beginObject().key("info").beginObject();
    json.member("name", film.title)
        .member("movie_image", pictureUrl(film.picture, "/pictures/film/", film.id));
    json.key("backdrop_path").beginArray().string(m_baseUrl + "/pictures/backdrop/" + id + ".jpg").endArray();
    writePeople(json, film);
    json.member("duration_secs", film.minutes * 60).member("releasedate", releaseDate(film));
    // Providers do not agree on where the subtitle files stand, nor in what shape.
    switch (film.id % 5) {
    case 0:
        json.key("subtitles").beginArray().string(m_baseUrl + srt).string(vtt).endArray();
        break;
    case 1:
        json.key("subs")
            .beginArray()
            .beginObject()
            .member("lang", "por")
            .member("url", "")
            .member("file", srt);
        json.endObject().endArray();
        break;
    case 2:
        json.key("subtitles").beginArray().endArray();
        break;
    default:
        break;
    }
    json.endObject().key("movie_data").beginObject();
    json.member("stream_id", film.id).member("name", film.name).member("added", addedText(film.number));
    json.member("category_id", std::to_string(film.category.id));
    json.member("container_extension", film.extension);
    if (film.id % 5 == 2) {
        json.key("subtitles")
            .beginArray()
            .string(srt.substr(1))
            .beginObject()
            .member("link", vtt)
            .endObject();
        json.endArray();
    }
    json.endObject();
    if (film.id % 5 == 3) {
        json.key("subtitles")
            .beginArray()
            .beginObject()
            .member("language", "eng")
            .member("src", vtt)
            .endObject();
        json.endArray();
    }
    json.endObject();
    return out;
}

std::string Replies::listingsOf(const ChannelRecord& channel, std::span<const Programme> programmes) const {
    const UnixTime now = unixNow();
    std::string out;
    JsonWriter json(out);
    json.beginObject().key("epg_listings").beginArray();
    for (const Programme& programme : programmes) {
        json.beginObject().member("id", std::to_string(programme.start / 60));
        json.member("epg_id", "1").member("title", base64(programme.row->title)).member("lang", "pt");
        json.member("start", wallClock(programme.start)).member("end", wallClock(programme.stop));
        json.member("description", base64(programme.row->description)).member("channel_id", channel.guideId);
        json.member("start_timestamp", std::to_string(programme.start));
        json.member("stop_timestamp", std::to_string(programme.stop));
        json.member("now_playing", programme.start <= now && now < programme.stop ? 1 : 0);
        json.member("has_archive", channel.archiveDays > 0 && programme.stop <= now ? 1 : 0).endObject();
    }
    json.endArray().endObject();
    return out;
}

std::string Replies::listings(std::size_t channelIndex, UnixTime from, UnixTime until) const {
    const ChannelRecord channel = m_catalogue.channel(channelIndex);
    const auto programmes =
        channel.guideId.empty() ? std::vector<Programme>() : m_guide.programmes(channel, from, until);
    return listingsOf(channel, programmes);
}

std::string Replies::shortListings(std::size_t channelIndex, UnixTime now, std::size_t limit) const {
    const ChannelRecord channel = m_catalogue.channel(channelIndex);
    auto programmes =
        channel.guideId.empty() ? std::vector<Programme>() : m_guide.programmes(channel, now, now + 86400);
    programmes.resize(std::min(programmes.size(), limit));
    return listingsOf(channel, programmes);
}

} // namespace ondavia::demo
