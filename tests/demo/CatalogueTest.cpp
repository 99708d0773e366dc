#include "DemoTestSupport.h"

#include <QRegularExpression>
#include <QSet>

#include <array>

namespace ondavia::demo {
namespace {

const auto everyAction = std::to_array<std::string>(
    {"", "get_live_categories", "get_vod_categories", "get_series_categories", "get_live_streams",
     "get_vod_streams", "get_series", "get_series_info&series_id=2001", "get_vod_info&vod_id=100001",
     "get_simple_data_table&stream_id=1001"});

QJsonValue field(const QJsonValue& row, const char* key) {
    return row.toObject().value(QLatin1String(key));
}

bool isInteger(const QJsonValue& value) {
    return value.isDouble() && value.toDouble() == double(value.toInteger());
}

TEST(DemoLogin, TellsTheAccountInTheWireTypes) {
    RunningProvider demo;
    const QJsonObject reply = demo.api({}).object();
    const QJsonValue user = reply.value(QLatin1String("user_info"));
    EXPECT_EQ(field(user, "auth").toInteger(), 1);
    EXPECT_TRUE(field(user, "exp_date").isString());
    EXPECT_TRUE(field(user, "max_connections").isString());
    EXPECT_EQ(field(user, "active_cons").toString(), QLatin1String("0"));
    const QJsonValue server = reply.value(QLatin1String("server_info"));
    EXPECT_TRUE(field(server, "port").isString());
    EXPECT_TRUE(isInteger(field(server, "timestamp_now")));
}

TEST(DemoLogin, AnswersEveryActionOfAWrongPasswordWithAuthZero) {
    RunningProvider demo;
    for (const std::string& action : everyAction) {
        const std::string path = "/player_api.php?username=demo&password=wrong&action=" + action;
        EXPECT_EQ(demo.get(path), R"({"user_info":{"auth":0}})") << action;
    }
    demo.get("/xmltv.php?username=demo&password=wrong", 403);
    demo.get("/live/demo/wrong/1001.ts", 403);
    demo.get("/movie/demo/wrong/100001.mp4", 403);
}

TEST(DemoCatalogue, GivesEveryStrictFieldItsType) {
    RunningProvider demo;
    for (const auto& row : demo.list("get_live_streams")) {
        EXPECT_TRUE(isInteger(field(row, "stream_id")) && isInteger(field(row, "num")));
        EXPECT_TRUE(isInteger(field(row, "tv_archive")) && isInteger(field(row, "tv_archive_duration")));
        EXPECT_TRUE(field(row, "name").isString() && field(row, "category_id").isString());
        EXPECT_TRUE(field(row, "epg_channel_id").isString() || field(row, "epg_channel_id").isNull());
        EXPECT_TRUE(field(row, "is_adult").isString() && field(row, "added").isString());
    }
    for (const auto& row : demo.list("get_vod_streams")) {
        EXPECT_TRUE(isInteger(field(row, "stream_id")) && field(row, "container_extension").isString());
        EXPECT_TRUE(field(row, "plot").isString() && field(row, "category_ids").toArray().at(0).isDouble());
    }
    for (const auto& row : demo.list("get_series")) {
        EXPECT_TRUE(isInteger(field(row, "series_id")) && field(row, "releaseDate").isString());
        EXPECT_TRUE(field(row, "backdrop_path").isArray() && field(row, "last_modified").isString());
    }
}

TEST(DemoCatalogue, HasTheSizeAndTheIrregularitiesOfARealOne) {
    RunningProvider demo;
    EXPECT_EQ(demo.list("get_live_streams").size(), 60);
    EXPECT_EQ(demo.list("get_series").size(), 40);
    EXPECT_EQ(demo.list("get_live_categories").size(), 9);
    const QJsonArray films = demo.list("get_vod_streams");
    EXPECT_EQ(films.size(), 150);
    int numbers = 0, texts = 0, missingRatings = 0, missingPictures = 0, brokenPictures = 0, adult = 0,
        years = 0;
    static const QRegularExpression year(QStringLiteral("\\(\\d{4}\\)$"));
    for (const auto& row : films) {
        const QJsonValue rating = field(row, "rating");
        numbers += rating.isDouble() ? 1 : 0;
        texts += !rating.toString().isEmpty() ? 1 : 0;
        missingRatings += rating.isNull() || (rating.isString() && rating.toString().isEmpty()) ? 1 : 0;
        const QString picture = field(row, "stream_icon").toString();
        missingPictures += picture.isEmpty() ? 1 : 0;
        if (picture.contains(QLatin1String("/missing/"))) {
            ++brokenPictures;
            demo.get(picture.mid(static_cast<qsizetype>(demo.url().size())).toStdString(), 404);
        }
        adult += field(row, "is_adult").toString() == QLatin1String("1") ? 1 : 0;
        years += year.match(field(row, "name").toString()).hasMatch() ? 1 : 0;
    }
    EXPECT_GT(numbers, 30);
    EXPECT_GT(texts, 30);
    EXPECT_GT(missingRatings, 2);
    EXPECT_GT(missingPictures, 2);
    EXPECT_GT(brokenPictures, 2);
    EXPECT_EQ(adult, 4);
    EXPECT_GT(years, 90);
    EXPECT_LT(years, 150);
}

TEST(DemoCatalogue, KeepsEveryIdForItself) {
    RunningProvider demo({.scale = 1800});
    QSet<qint64> ids;
    for (const std::string action : {"get_live_streams", "get_vod_streams"}) {
        for (const auto& row : demo.list(action)) {
            EXPECT_FALSE(ids.contains(field(row, "stream_id").toInteger()));
            ids.insert(field(row, "stream_id").toInteger());
        }
    }
    EXPECT_EQ(ids.size(), 1400);
}

TEST(DemoCatalogue, NamesEveryCategoryOnceAndEveryRowsCategory) {
    RunningProvider demo({.scale = 900});
    const std::array<std::pair<std::string, std::string>, 3> pairs{
        {{"get_live_categories", "get_live_streams"},
         {"get_vod_categories", "get_vod_streams"},
         {"get_series_categories", "get_series"}}};
    for (const auto& [categories, rows] : pairs) {
        QSet<QString> known;
        for (const auto& category : demo.list(categories)) {
            EXPECT_FALSE(known.contains(field(category, "category_id").toString()));
            known.insert(field(category, "category_id").toString());
        }
        for (const auto& row : demo.list(rows)) {
            EXPECT_TRUE(known.contains(field(row, "category_id").toString()));
        }
    }
}

TEST(DemoCatalogue, ScalesToTheRowsAskedForAtARealRowSize) {
    RunningProvider demo({.scale = 18000});
    const std::string live = demo.get(apiPath("get_live_streams"));
    const std::string films = demo.get(apiPath("get_vod_streams"));
    const std::string series = demo.get(apiPath("get_series"));
    const auto rows = [](const std::string& text) {
        return QJsonDocument::fromJson(QByteArray::fromStdString(text)).array().size();
    };
    EXPECT_EQ(rows(live), 2000);
    EXPECT_EQ(rows(films), 12000);
    EXPECT_EQ(rows(series), 4000);
    EXPECT_NEAR(static_cast<double>(live.size() + films.size() + series.size()) / 18000.0, 955.0, 50.0);
}

TEST(DemoCatalogue, IsTheSameForTheSameSeedOnly) {
    const auto nameOf = [](std::uint64_t seed) {
        RunningProvider demo({.seed = seed, .scale = 3600});
        return field(demo.list("get_vod_streams").at(2000), "name").toString();
    };
    const QString first = nameOf(5);
    EXPECT_EQ(first, nameOf(5));
    EXPECT_NE(first, nameOf(6));
}

TEST(DemoSeries, SendsEpisodesBySeasonAndOneSeriesAsAList) {
    RunningProvider demo;
    const QJsonObject usual = demo.api("get_series_info", "&series_id=2001").object();
    const QJsonObject bySeason = usual.value(QLatin1String("episodes")).toObject();
    EXPECT_EQ(bySeason.size(), usual.value(QLatin1String("seasons")).toArray().size());
    const QJsonValue episode = bySeason.value(QLatin1String("1")).toArray().at(0);
    EXPECT_TRUE(field(episode, "id").isString() && isInteger(field(episode, "season")));
    EXPECT_TRUE(isInteger(field(field(episode, "info"), "duration_secs")));
    EXPECT_TRUE(field(usual.value(QLatin1String("info")), "rating").isString());
    const QJsonArray list =
        demo.api("get_series_info", "&series_id=2008").object().value(QLatin1String("episodes")).toArray();
    ASSERT_GE(list.size(), 2);
    EXPECT_TRUE(list.at(0).isNull());
    EXPECT_TRUE(list.at(1).isArray());
    EXPECT_EQ(demo.get(apiPath("get_series_info", "&series_id=1")), "[]");
}

TEST(DemoFilms, ListSubtitlesInTheShapesThatProvidersUse) {
    RunningProvider demo;
    const auto info = [&](int id) {
        return demo.api("get_vod_info", "&vod_id=" + std::to_string(id)).object();
    };
    const auto subtitles = [](const QJsonValue& holder, const char* key = "subtitles") {
        return field(holder, key).toArray();
    };
    EXPECT_TRUE(subtitles(info(100005).value(QLatin1String("info"))).at(0).isString());
    EXPECT_TRUE(field(subtitles(info(100001).value(QLatin1String("info")), "subs").at(0), "file").isString());
    EXPECT_EQ(subtitles(info(100002).value(QLatin1String("movie_data"))).size(), 2);
    EXPECT_EQ(subtitles(info(100003)).size(), 1);
    EXPECT_NE(demo.get("/subtitles/100001.por.srt").find("00:00:00,500 --> 00:00:03,300"), std::string::npos);
    EXPECT_TRUE(demo.get("/subtitles/100001.eng.vtt").starts_with("WEBVTT\n"));
}

} // namespace
} // namespace ondavia::demo
