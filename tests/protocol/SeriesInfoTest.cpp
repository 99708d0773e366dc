#include "WireSupport.h"

#include "base/Redaction.h"

namespace ondavia {
namespace {

using testing::refusal;

XtreamSeriesInfo decode(std::string_view json) {
    return decodeReply<XtreamSeriesInfo>(json, "get_series_info");
}

std::vector<std::string> seasonKeys(const XtreamSeriesInfo& info) {
    std::vector<std::string> keys;
    for (const auto& [key, episodes] : info.episodes.value()) {
        keys.push_back(key);
    }
    return keys;
}

using Keys = std::vector<std::string>;

TEST(XtreamSeriesInfo, readsEveryField) {
    const auto info = decode(R"({
        "seasons":[{"air_date":"2015-03-01","episode_count":10,"id":5,"name":"T1","overview":"o",
            "season_number":1,"cover":"c","cover_big":"cb"}],
        "info":{"name":"n","cover":"c","plot":"p","cast":"a","director":"d","genre":"g",
            "releaseDate":"2015-03-01","rating":"8","backdrop_path":["b"],"youtube_trailer":"y"},
        "episodes":{"1":[{"id":"5012","episode_num":"3","title":"t","container_extension":"mkv",
            "info":{"movie_image":"m","plot":"p","releasedate":"2015-03-08","rating":8.1,"duration":"00:42:00",
                "duration_secs":2520,"bitrate":1800,"cover_big":"b"},
            "subtitles":["s"],"season":1}]}})");
    EXPECT_EQ(info.seasons, (std::vector<XtreamSeason>{{"2015-03-01", 10, 5, "T1", "o", 1, "c", "cb"}}));
    EXPECT_EQ(info.info, (XtreamSeriesDetail{"n", "c", "p", "a", "d", "g", "2015-03-01", "8",
                                             std::vector<std::string>{"b"}, "y"}));
    XtreamEpisode episode;
    episode.id = "5012";
    episode._episodeNum.value = 3;
    episode.title = "t";
    episode.containerExtension = "mkv";
    episode.info = XtreamEpisodeInfo{"m", "p", "2015-03-08", {"8.1"}, "00:42:00", 2520, 1800, "b"};
    episode.subtitles = {"s"};
    episode.season = 1;
    EXPECT_EQ(info.episodes, (XtreamEpisodeMap{{"1", {episode}}}));
}

TEST(XtreamSeriesInfo, keepsTheKeysOfAnObjectOfEpisodes) {
    EXPECT_EQ(seasonKeys(decode(R"({"episodes":{"1":[],"2":[{}]}})")), (Keys{"1", "2"}));
    EXPECT_EQ(seasonKeys(decode(R"({"episodes":{}})")), Keys{});
}

TEST(XtreamSeriesInfo, numbersTheEntriesOfAListOfEpisodes) {
    EXPECT_EQ(seasonKeys(decode(R"({"episodes":[[{}],null,[]]})")), (Keys{"0", "2"}));
    EXPECT_EQ(seasonKeys(decode(R"({"episodes":[]})")), Keys{});
    EXPECT_EQ(seasonKeys(decode(R"({"episodes":[null]})")), Keys{});
}

TEST(XtreamSeriesInfo, losesOnlyItsEpisodesToAMalformedOne) {
    for (const char* episodes : {R"("none")", "5", "true", "null", R"({"1":[{"id":5}]})",
                                 R"([[{}],[{"season":"1"}]])", R"({"1":null})", R"({"1":{}})", R"([{}])",
                                 R"([[{"info":[]}]])", R"([[null]])", R"({"1":[],"2":[{"title":1}]})"}) {
        const auto info = decode(std::string(R"({"episodes":)") + episodes +
                                 R"(,"seasons":[{"id":1}],"info":{"name":"n"}})");
        EXPECT_EQ(info.episodes, std::nullopt) << episodes;
        EXPECT_EQ(info.seasons.value().size(), 1U) << episodes;
        EXPECT_EQ(info.info.value().name, "n") << episodes;
    }
}

TEST(XtreamSeriesInfo, failsForAMalformedSeasonOrDetail) {
    EXPECT_EQ(refusal<XtreamSeriesInfo>(R"({"seasons":[{},{"id":"1"}]})")->keyPath(), "seasons[1].id");
    EXPECT_EQ(refusal<XtreamSeriesInfo>(R"({"seasons":{}})")->keyPath(), "seasons");
    EXPECT_EQ(refusal<XtreamSeriesInfo>(R"({"episodes":"x","info":{"name":5}})")->keyPath(), "info.name");
    EXPECT_EQ(refusal<XtreamSeriesInfo>(R"({"info":{"releaseDate":2015}})")->keyPath(), "info.releaseDate");
}

TEST(XtreamSeriesInfo, failsForASeasonOrDetailBeforeItsEpisodesCount) {
    const std::string episodes = R"("episodes":{"1":[{"info":{"rating":1e300}}]})";
    const testing::FatalFaultTrap trap;
    for (const std::string malformed : {R"("seasons":5)", R"("info":{"name":5})"}) {
        EXPECT_TRUE(refusal<XtreamSeriesInfo>("{" + episodes + "," + malformed + "}")) << malformed;
        EXPECT_TRUE(refusal<XtreamSeriesInfo>("{" + malformed + "," + episodes + "}")) << malformed;
    }
    EXPECT_EQ(refusal<XtreamSeriesInfo>(R"({"info":{"name":5},"seasons":5})")->keyPath(), "seasons");
    EXPECT_THROW(decode("{" + episodes + R"(,"seasons":[]})"), testing::FatalFaultRaised);
}

TEST(XtreamSeriesInfo, dropsAFatalNumberWithTheEpisodesItStoodIn) {
    const std::string fatal = R"({"info":{"rating":1e300}})";
    const testing::FatalFaultTrap trap;
    for (const std::string& episodes : {R"({"1":[)" + fatal + R"(,{"id":7}]})", "[[" + fatal + "],[null]]"}) {
        EXPECT_EQ(decode(R"({"episodes":)" + episodes + "}").episodes, std::nullopt) << episodes;
        EXPECT_THROW(decode(R"({"episodes":{"1":[)" + fatal + R"(]},"episodes":)" + episodes + "}"),
                     testing::FatalFaultRaised)
            << episodes;
    }
}

TEST(XtreamSeriesInfo, takesTheLastOfARepeatedKey) {
    const auto info = decode(R"({"episodes":{"1":[]},"seasons":[{"id":1},{"id":2}],"seasons":[{"id":3}],
        "episodes":{"2":[]}})");
    ASSERT_EQ(info.seasons.value().size(), 1U);
    EXPECT_EQ(info.seasons->at(0).id, 3);
    EXPECT_EQ(seasonKeys(info), Keys{"2"});
}

TEST(XtreamSeriesInfo, takesANumberForAnEpisodesRatingOnly) {
    const auto info = decode(R"({"episodes":{"1":[{"info":{"rating":8}}]}})");
    EXPECT_EQ(info.episodes.value().at("1").at(0).info.value().rating(), "8");
    EXPECT_EQ(refusal<XtreamSeriesInfo>(R"({"info":{"rating":8}})")->keyPath(), "info.rating");
}

/// `element` so often that a reply may not hold one more.
std::string tooMany(const std::string& element) {
    std::string list = element;
    for (std::size_t count = 0; count < maximumReplyElements; ++count) {
        list += "," + element;
    }
    return list;
}

TEST(XtreamSeriesInfo, boundsAKeyOfTheServers) {
    registerSecret("season-key-4711");
    const auto keyPath = [](const std::string& key) {
        const auto error =
            refusal<XtreamSeriesInfo>(R"({"episodes":{")" + key + R"(":[)" + tooMany("{}") + "]}}");
        return error ? error->keyPath() : std::string();
    };
    EXPECT_EQ(keyPath("1"), "episodes.1");
    EXPECT_EQ(keyPath(std::string(100'000, 'k')), "episodes." + std::string(40, 'k') + "...");
    EXPECT_EQ(keyPath(std::string(30, '-') + "season-key-4711" + std::string(30, '-')),
              "episodes." + std::string(30, '-') + "<redacted>...");
}

TEST(XtreamSeriesInfo, passesOnTheBoundOnItsElementsInEitherShape) {
    std::string seasons = R"("0":[])";
    for (std::size_t season = 1; season <= maximumReplyElements; ++season) {
        seasons += ",\"" + std::to_string(season) + "\":[]";
    }
    for (const std::string& episodes :
         {R"({"1":[{}],"2":[)" + tooMany("{}") + "]}", "[[" + tooMany("{}") + "]]", "{" + seasons + "}",
          "[" + tooMany("[]") + "]", "[" + tooMany("null") + "]"}) {
        const auto error = refusal<XtreamSeriesInfo>(R"({"seasons":[],"episodes":)" + episodes + "}");
        ASSERT_TRUE(error) << episodes.substr(0, 20);
        EXPECT_TRUE(error->keyPath().starts_with("episodes")) << error->keyPath();
        EXPECT_EQ(error->expected(), "reply of at most 250000 list elements");
    }
}

} // namespace
} // namespace ondavia
