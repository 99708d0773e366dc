#include "DemoTestSupport.h"

#include <QSet>

namespace ondavia::demo {
namespace {

QJsonArray popular(RunningProvider& demo, const std::string& kind, const std::string& language) {
    return demo.json("/3/" + kind + "/popular?api_key=demo-title-key&language=" + language + "&page=1")
        .object()
        .value(QLatin1String("results"))
        .toArray();
}

QString text(const QJsonValue& row, const char* key) {
    return row.toObject().value(QLatin1String(key)).toString();
}

TEST(DemoTitles, ArriveWithTheKeyFromTheConfiguration) {
    RunningProvider demo;
    EXPECT_EQ(text(demo.json("/api/config").object(), "tmdb_key"), QLatin1String("demo-title-key"));
    demo.get("/3/movie/popular?api_key=other&language=pt-PT&page=1", 401);
}

TEST(DemoTitles, OverlapWithTheCatalogueOnlyInPart) {
    RunningProvider demo;
    QSet<QString> known;
    for (const auto& row : demo.list("get_vod_streams")) {
        known.insert(text(row, "title"));
    }
    int overlapping = 0;
    const QJsonArray list = popular(demo, "movie", "en-US");
    for (const auto& row : list) {
        overlapping += known.contains(text(row, "title")) ? 1 : 0;
    }
    EXPECT_EQ(list.size(), 20);
    EXPECT_EQ(overlapping, 15);
    EXPECT_FALSE(text(popular(demo, "tv", "pt-PT").at(0), "name").isEmpty());
}

TEST(DemoTitles, ComeInAForeignScriptWhereUntranslated) {
    RunningProvider demo;
    const QString portuguese = text(popular(demo, "movie", "pt-PT").at(3), "title");
    const QString english = text(popular(demo, "movie", "en-US").at(3), "title");
    EXPECT_GT(portuguese.at(0).unicode(), 0x2000);
    EXPECT_LT(english.at(0).unicode(), 0x250);
}

TEST(DemoTitles, HaveDetailsWithCastVideosAndPictures) {
    RunningProvider demo;
    const std::string query = "?api_key=demo-title-key&language=pt-PT&append_to_response=credits,videos";
    const QJsonObject film = demo.json("/3/movie/700001" + query).object();
    EXPECT_GT(film.value(QLatin1String("runtime")).toInt(), 0);
    const QJsonValue actor =
        film.value(QLatin1String("credits")).toObject().value(QLatin1String("cast")).toArray().at(0);
    const QJsonArray videos =
        film.value(QLatin1String("videos")).toObject().value(QLatin1String("results")).toArray();
    EXPECT_EQ(text(videos.at(1), "type"), QLatin1String("Trailer"));
    EXPECT_TRUE(demo.get("/t/p/w500" + text(film, "poster_path").toStdString()).starts_with("\xFF\xD8\xFF"));
    EXPECT_TRUE(
        demo.get("/t/p/w780" + text(film, "backdrop_path").toStdString()).starts_with("\xFF\xD8\xFF"));
    EXPECT_TRUE(
        demo.get("/t/p/w185" + text(actor, "profile_path").toStdString()).starts_with("\xFF\xD8\xFF"));
    EXPECT_EQ(demo.json("/3/tv/800000" + query).object().value(QLatin1String("number_of_seasons")).toInt(),
              2);
    demo.get("/3/movie/1" + query, 404);
}

} // namespace
} // namespace ondavia::demo
