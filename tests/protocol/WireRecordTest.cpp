#include "WireSupport.h"

namespace ondavia {
namespace {

using testing::refusal;

using LiveStreams = std::vector<XtreamLiveStream>;
using VodStreams = std::vector<XtreamVodStream>;
using SeriesItems = std::vector<XtreamSeriesItem>;
using Categories = std::vector<XtreamCategory>;

constexpr std::string_view fullAccount = R"({
    "user_info": {"username":"maria","password":"segredo","message":"Ol\u00e1","auth":1,"status":"Active",
        "exp_date":"1798761600","is_trial":"0","active_cons":"1","created_at":"1609459200",
        "max_connections":"2","allowed_output_formats":["m3u8","ts"]},
    "server_info": {"url":"tv.example","port":"8080","https_port":"8443","server_protocol":"http",
        "rtmp_port":"8001","timezone":"Europe/Lisbon","timestamp_now":1772400000,"time_now":"2026-03-01 21:00:00"}})";

TEST(XtreamAuthResponse, readsEveryField) {
    const auto reply = decodeReply<XtreamAuthResponse>(fullAccount);
    const XtreamAuthResponse expected{XtreamUserInfo{"maria", "segredo", "Ol\xC3\xA1", 1, "Active",
                                                     "1798761600", "0", "1", "1609459200", "2",
                                                     std::vector<std::string>{"m3u8", "ts"}},
                                      XtreamServerInfo{"tv.example", "8080", "8443", "http", "8001",
                                                       "Europe/Lisbon", 1772400000, "2026-03-01 21:00:00"}};
    EXPECT_EQ(reply, expected);
}

TEST(XtreamAuthResponse, isEmptyForAnEmptyObject) {
    EXPECT_EQ(decodeReply<XtreamAuthResponse>("{}"), XtreamAuthResponse{});
    EXPECT_EQ(decodeReply<XtreamAuthResponse>(R"({"user_info":null,"server_info":null})"),
              XtreamAuthResponse{});
}

TEST(XtreamAuthResponse, takesNullForNoExpiry) {
    const auto reply = decodeReply<XtreamAuthResponse>(R"({"user_info":{"exp_date":null,"auth":1}})");
    ASSERT_TRUE(reply.userInfo);
    EXPECT_EQ(reply.userInfo->expDate, std::nullopt);
    EXPECT_EQ(reply.userInfo->auth, 1);
}

TEST(XtreamAuthResponse, failsForOneWrongType) {
    EXPECT_EQ(refusal<XtreamAuthResponse>(R"({"user_info":{"exp_date":1798761600}})")->keyPath(),
              "user_info.exp_date");
    EXPECT_EQ(refusal<XtreamAuthResponse>(R"({"server_info":{"port":8080}})")->keyPath(), "server_info.port");
    EXPECT_EQ(refusal<XtreamAuthResponse>(R"({"user_info":{"auth":"1"}})")->keyPath(), "user_info.auth");
    EXPECT_EQ(refusal<XtreamAuthResponse>(R"({"user_info":{"allowed_output_formats":["ts",1]}})")->keyPath(),
              "user_info.allowed_output_formats[1]");
    EXPECT_TRUE(refusal<XtreamAuthResponse>(R"({"user_info":[]})"));
    EXPECT_TRUE(refusal<XtreamAuthResponse>("[]"));
    EXPECT_TRUE(refusal<XtreamAuthResponse>("null"));
    EXPECT_TRUE(refusal<XtreamAuthResponse>(""));
}

TEST(XtreamCategory, readsEveryField) {
    const auto rows = decodeReply<Categories>(
        R"([{"category_id":"5","category_name":"Not\u00edcias","parent_id":0},{"category_name":"B","category_id":""}])");
    EXPECT_EQ(rows, (Categories{{"5",
                                 "Not\xC3\xAD"
                                 "cias",
                                 0},
                                {"", "B", std::nullopt}}));
}

TEST(XtreamCategory, failsItsListWithoutIdOrName) {
    const auto error =
        refusal<Categories>(R"([{"category_id":"1","category_name":"A"},{"category_id":"2","parent_id":0}])",
                            "get_vod_categories");
    ASSERT_TRUE(error);
    EXPECT_EQ(error->row(), 1);
    EXPECT_EQ(error->keyPath(), "category_name");
    EXPECT_TRUE(refusal<Categories>(R"([{"category_name":"A"}])"));
    EXPECT_TRUE(refusal<Categories>(R"([{"category_id":"1","category_name":null}])"));
    EXPECT_TRUE(refusal<Categories>(R"([{"category_id":1,"category_name":"A"}])"));
}

TEST(XtreamLiveStream, readsEveryField) {
    const auto rows =
        decodeReply<LiveStreams>(R"([{"num":1,"name":"RTP 1","stream_type":"live","stream_id":17,
        "stream_icon":"http://i/1.png","epg_channel_id":"rtp1.pt","added":"1609459200","is_adult":"0",
        "category_id":"5","category_ids":[5,6],"tv_archive":1,"direct_source":"","tv_archive_duration":7}])");
    const XtreamLiveStream expected{1,         "RTP 1",      "live", 17,  "http://i/1.png",
                                    "rtp1.pt", "1609459200", "0",    "5", std::vector<std::int64_t>{5, 6},
                                    1,         "",           7};
    EXPECT_EQ(rows, LiveStreams{expected});
}

TEST(StreamRow, decodesWithoutIdOrName) {
    const auto lives = decodeReply<LiveStreams>(R"([{"name":"A"},{"stream_id":1},{}])");
    ASSERT_EQ(lives.size(), 3U);
    EXPECT_EQ(lives[0].streamId, std::nullopt);
    EXPECT_EQ(lives[1].name, std::nullopt);
    const auto movies = decodeReply<VodStreams>(R"([{"name":"A"},{"stream_id":1},{}])");
    ASSERT_EQ(movies.size(), 3U);
    EXPECT_EQ(movies[0].streamId, std::nullopt);
    EXPECT_EQ(movies[1].name, std::nullopt);
    const auto series = decodeReply<SeriesItems>(R"([{"name":"A"},{"series_id":1},{}])");
    ASSERT_EQ(series.size(), 3U);
    EXPECT_EQ(series[0].seriesId, std::nullopt);
    EXPECT_EQ(series[1].name, std::nullopt);
}

/// A list is refused for its second row when `key` holds `value` there.
template<class Row> void expectRefusal(const std::string& key, const std::string& value) {
    const std::string good = R"({"category_id":"1","category_name":"A"})";
    const auto error = refusal<std::vector<Row>>("[" + good + R"(,{")" + key + "\":" + value + "}]");
    ASSERT_TRUE(error) << key;
    EXPECT_EQ(error->row(), 1) << key;
    EXPECT_EQ(error->keyPath(), key);
}

TEST(StreamRow, isRefusedWithItsPositionAndKey) {
    expectRefusal<XtreamCategory>("parent_id", R"("0")");
    expectRefusal<XtreamCategory>("category_id", "1");
    expectRefusal<XtreamLiveStream>("is_adult", "0");
    expectRefusal<XtreamLiveStream>("category_id", "5");
    expectRefusal<XtreamVodStream>("is_adult", "true");
    expectRefusal<XtreamVodStream>("category_id", "5");
    expectRefusal<XtreamVodStream>("plot", "[]");
    expectRefusal<XtreamSeriesItem>("category_id", "5");
    expectRefusal<XtreamSeriesItem>("plot", "{}");
}

TEST(XtreamLiveStream, readsKeysInAnyOrderAndIgnoresUnknownOnes) {
    const auto rows = decodeReply<LiveStreams>(
        R"([{"tv_archive":1,"custom_sid":{"a":[1,{"name":"inner"}]},"name":"A","Name":"B","num":3,"stream_id":9}])");
    EXPECT_EQ(rows.at(0).name, "A");
    EXPECT_EQ(rows.at(0).num, 3);
    EXPECT_EQ(rows.at(0).streamId, 9);
    EXPECT_EQ(rows.at(0).tvArchive, 1);
}

TEST(XtreamLiveStream, takesTheLastOfARepeatedKey) {
    const auto rows = decodeReply<LiveStreams>(
        R"([{"name":"A","category_ids":[1,2],"name":"B","category_ids":[3]},{"name":"A","name":null}])");
    EXPECT_EQ(rows.at(0).name, "B");
    EXPECT_EQ(rows.at(0).categoryIds, std::vector<std::int64_t>{3});
    EXPECT_EQ(rows.at(1).name, std::nullopt);
}

TEST(XtreamLiveStream, failsTheListForOneWrongType) {
    for (const char* field :
         {R"("num":"1")", R"("name":5)", R"("is_adult":0)", R"("category_id":5)", R"("category_ids":["5"])",
          R"("category_ids":5)", R"("category_ids":[null])", R"("tv_archive":"1")",
          R"("tv_archive_duration":"7")", R"("added":1609459200)"}) {
        EXPECT_TRUE(refusal<LiveStreams>(std::string(R"([{"name":"good"},{)") + field + "}]")) << field;
    }
}

TEST(XtreamVodStream, readsEveryField) {
    const auto rows = decodeReply<VodStreams>(R"x([{"num":2,"name":"Matrix (1999)","stream_type":"movie",
        "stream_id":42,"stream_icon":"i","rating":8.7,"rating_5based":"4.3","added":"1","is_adult":"1",
        "category_id":"9","category_ids":[9],"container_extension":"mkv","direct_source":"d","plot":"p",
        "cast":"c","director":"r","genre":"g","year":1999,"release_date":"1999-03-31",
        "youtube_trailer":"abc","episode_run_time":136}])x");
    XtreamVodStream expected;
    expected.num = 2;
    expected.name = "Matrix (1999)";
    expected.streamType = "movie";
    expected.streamId = 42;
    expected.streamIcon = "i";
    expected._rating.value = "8.7";
    expected._ratingFive.value = "4.3";
    expected.added = "1";
    expected.isAdult = "1";
    expected.categoryId = "9";
    expected.categoryIds = {9};
    expected.containerExtension = "mkv";
    expected.directSource = "d";
    expected.plot = "p";
    expected.cast = "c";
    expected.director = "r";
    expected.genre = "g";
    expected._year.value = "1999";
    expected._releaseDate.value = "1999-03-31";
    expected._youtubeTrailer.value = "abc";
    expected._episodeRunTime.value = "136";
    EXPECT_EQ(rows, VodStreams{expected});
    EXPECT_EQ(rows.at(0).ratingFive(), "4.3");
    EXPECT_EQ(rows.at(0).episodeRunTime(), "136");
}

TEST(XtreamVodStream, hasNoCamelCaseReleaseDate) {
    EXPECT_EQ(decodeReply<VodStreams>(R"([{"releaseDate":"x"}])").at(0).releaseDate(), std::nullopt);
}

TEST(XtreamSeriesItem, readsEveryField) {
    const auto rows = decodeReply<SeriesItems>(R"([{"num":3,"name":"S","series_id":77,"cover":"c","plot":"p",
        "cast":"a","director":"d","genre":"g","releaseDate":"2015-03-01","last_modified":"1","rating":"8",
        "rating_5based":4,"backdrop_path":["b1","b2"],"youtube_trailer":"y","category_id":"1",
        "category_ids":[1,2]}])");
    XtreamSeriesItem expected;
    expected.num = 3;
    expected.name = "S";
    expected.seriesId = 77;
    expected.cover = "c";
    expected.plot = "p";
    expected.cast = "a";
    expected.director = "d";
    expected.genre = "g";
    expected.releaseDate = "2015-03-01";
    expected.lastModified = "1";
    expected._rating.value = "8";
    expected._ratingFive.value = "4";
    expected.backdropPath = {"b1", "b2"};
    expected.youtubeTrailer = "y";
    expected.categoryId = "1";
    expected.categoryIds = {1, 2};
    EXPECT_EQ(rows, SeriesItems{expected});
}

TEST(XtreamSeriesItem, hasStrictDateAndTrailer) {
    EXPECT_TRUE(refusal<SeriesItems>(R"([{"releaseDate":2015}])"));
    EXPECT_TRUE(refusal<SeriesItems>(R"([{"youtube_trailer":5}])"));
    EXPECT_TRUE(refusal<SeriesItems>(R"([{"backdrop_path":"b"}])"));
    EXPECT_EQ(decodeReply<SeriesItems>(R"([{"release_date":"x"}])").at(0).releaseDate, std::nullopt);
}

TEST(XtreamEPGResponse, readsEveryField) {
    const auto reply = decodeReply<XtreamEPGResponse>(R"({"epg_listings":[{"id":"1","title":"VGl0bGU=",
        "description":"RA==","channel_id":"rtp1.pt","start":"2026-03-01 21:00:00","end":"2026-03-01 22:00:00",
        "has_archive":1},{}]})");
    ASSERT_TRUE(reply.epgListings);
    EXPECT_EQ(reply.epgListings->at(0), (XtreamEPGListing{"1", "VGl0bGU=", "RA==", "rtp1.pt",
                                                          "2026-03-01 21:00:00", "2026-03-01 22:00:00", 1}));
    EXPECT_EQ(reply.epgListings->at(1), XtreamEPGListing{});
}

TEST(XtreamEPGResponse, mayLackItsListings) {
    EXPECT_EQ(decodeReply<XtreamEPGResponse>("{}").epgListings, std::nullopt);
    EXPECT_EQ(refusal<XtreamEPGResponse>(R"({"epg_listings":[{},{"has_archive":"1"}]})")->keyPath(),
              "epg_listings[1].has_archive");
}

/// Encoding writes the keys that decoding reads, for each record.
template<class Reply> void expectRoundTrip(std::string_view json) {
    const auto reply = decodeReply<Reply>(json);
    const std::string encoded = encodeReply(reply);
    EXPECT_EQ(decodeReply<Reply>(encoded), reply) << encoded;
    EXPECT_EQ(encodeReply(decodeReply<Reply>(encoded)), encoded);
}

TEST(Encoding, writesWhatDecodingReads) {
    expectRoundTrip<XtreamAuthResponse>(fullAccount);
    expectRoundTrip<XtreamAuthResponse>("{}");
    expectRoundTrip<Categories>(R"([{"category_id":"a\"\\\u0000\u001f\/","category_name":"\ud83d\ude00"}])");
    expectRoundTrip<LiveStreams>(R"([{"num":1,"category_ids":[]},{}])");
    expectRoundTrip<VodStreams>(R"([{"rating":7.5,"year":"1999"}])");
    expectRoundTrip<SeriesItems>(R"([{"backdrop_path":["a",""]}])");
    expectRoundTrip<XtreamEPGResponse>(R"({"epg_listings":[{"id":"1"}]})");
    expectRoundTrip<XtreamSeriesInfo>(
        R"({"seasons":[{"id":1}],"info":{"name":"n"},"episodes":[[{"id":"1","info":{"rating":8}}],null,[]]})");
}

TEST(Encoding, leavesOutWhatIsAbsentButForFlexibleValues) {
    EXPECT_EQ(encodeReply(XtreamAuthResponse{}), "{}");
    EXPECT_EQ(encodeReply(Categories{{"1", "A\n", std::nullopt}}),
              R"([{"category_id":"1","category_name":"A\u000a"}])");
    EXPECT_EQ(
        encodeReply(VodStreams{XtreamVodStream{}}),
        R"([{"rating":null,"rating_5based":null,"year":null,"release_date":null,"youtube_trailer":null,)"
        R"("episode_run_time":null}])");
}

TEST(Encoding, writesTheValueOfAFlexibleInteger) {
    constexpr std::string_view json =
        R"({"episodes":{"1":[{"id":"a","episode_num":-3},{"episode_num":null,"season":2}]}})";
    EXPECT_EQ(encodeReply(decodeReply<XtreamSeriesInfo>(json)), json);
    EXPECT_EQ(encodeReply(decodeReply<XtreamSeriesInfo>(R"({"episodes":{"1":[{"episode_num":"12"},{}]}})")),
              R"({"episodes":{"1":[{"episode_num":12},{"episode_num":null}]}})");
}

TEST(Decoding, skipsAByteOrderMark) {
    EXPECT_EQ(decodeReply<XtreamEPGResponse>("\xEF\xBB\xBF{}").epgListings, std::nullopt);
}

} // namespace
} // namespace ondavia
