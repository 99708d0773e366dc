#include "WireSupport.h"

namespace ondavia {
namespace {

using testing::decodeInPieces;
using testing::decodingErrorOf;

std::string movies(int count) {
    std::string json = "[";
    for (int movie = 0; movie < count; ++movie) {
        json += movie == 0 ? "" : ",\n";
        json += R"({"num":)" + std::to_string(movie) + R"(,"name":"O \"Filme\" \u00e7, n\u00ba [)" +
                std::to_string(movie) + R"x(] (1999)","stream_id":)x" + std::to_string(movie * 7) +
                R"(,"rating":)" + std::to_string(movie % 10) +
                R"(.5,"category_ids":[1,2],"plot":"Um {enredo}, \\ com } tudo\\","extra":{"a":[{}]}})";
    }
    return json + "]";
}

TEST(XtreamListDecoder, givesTheRowsOfAWholeDecode) {
    const std::string json = movies(500);
    const auto whole = decodeReply<std::vector<XtreamVodStream>>(json);
    ASSERT_EQ(whole.size(), 500U);
    for (const std::size_t chunk : {std::size_t{1}, std::size_t{100}, std::size_t{1'000'000}}) {
        for (const std::size_t batchBytes :
             {std::size_t{0}, std::size_t{5000}, RowSplitter::defaultBatchBytes}) {
            EXPECT_EQ(decodeInPieces<XtreamVodStream>(json, chunk, batchBytes), whole);
        }
    }
}

TEST(XtreamListDecoder, handsRowsOutBeforeTheListHasEnded) {
    const std::string json = movies(5000);
    std::size_t handedOut = 0;
    XtreamListDecoder<XtreamVodStream> decoder(
        "get_vod_streams", [&](std::vector<XtreamVodStream>&& rows) { handedOut += rows.size(); });
    decoder.feed(std::string_view(json).substr(0, json.size() / 2));
    EXPECT_GT(handedOut, 1000U);
    EXPECT_LT(handedOut, 2501U);
}

TEST(XtreamListDecoder, countsRowsOverTheWholeListInErrors) {
    std::string json = movies(1000);
    json.replace(json.rfind("\"name\":"), 7, "\"num\":");
    for (const std::size_t batchBytes : {std::size_t{0}, std::size_t{5000}, std::size_t{10'000'000}}) {
        const auto error = decodingErrorOf([&] { decodeInPieces<XtreamVodStream>(json, 1000, batchBytes); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->row(), 999);
        EXPECT_EQ(error->keyPath(), "num");
        EXPECT_EQ(error->action(), "get_rows");
    }
}

TEST(XtreamListDecoder, findsTheRowThatIsNoJSON) {
    std::string json = movies(1000);
    json.replace(json.rfind("\"stream_id\":"), 12, "\"stream_id\"=");
    for (const std::size_t batchBytes : {std::size_t{0}, std::size_t{5000}, std::size_t{10'000'000}}) {
        const auto error = decodingErrorOf([&] { decodeInPieces<XtreamVodStream>(json, 1000, batchBytes); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->row(), 999);
        EXPECT_EQ(error->expected(), "JSON");
    }
}

TEST(XtreamListDecoder, refusesRowsThatAreNoObjects) {
    for (const char* json : {"[1,2,3]", "[null]", "[\"a\"]", "[[{}]]", "[{},5]"}) {
        EXPECT_TRUE(decodingErrorOf([&] { decodeInPieces<XtreamLiveStream>(json, 1); })) << json;
        EXPECT_TRUE(decodingErrorOf([&] { decodeInPieces<XtreamSeriesItem>(json, 1000); })) << json;
    }
}

TEST(XtreamListDecoder, raisesAFatalFaultOnlyWhenTheListHasEndedWell) {
    const testing::FatalFaultTrap trap;
    const std::string fatal = R"([{"rating":1e300},{"name":"b"})";
    for (const std::size_t batchBytes : {std::size_t{0}, RowSplitter::defaultBatchBytes}) {
        const auto decode = [batchBytes](const std::string& json) {
            decodeInPieces<XtreamVodStream>(json, 5, batchBytes);
        };
        EXPECT_THROW(decode(fatal + "]"), testing::FatalFaultRaised);
        EXPECT_THROW(decode(fatal + "]\n "), testing::FatalFaultRaised);
        for (const char* end : {"", ",", "}", "] x", R"(,{"num":"7"}])", R"(,{"num":7)", ",{,}]"}) {
            EXPECT_TRUE(decodingErrorOf([&] { decode(fatal + end); })) << end;
        }
    }
    XtreamListDecoder<XtreamVodStream> unfinished(
        "get_vod_streams", [](auto&&) {}, 0);
    EXPECT_NO_THROW(unfinished.feed(fatal + "]"));
}

TEST(XtreamListDecoder, readsLargeNumbersInABatch) {
    const auto rows =
        decodeInPieces<XtreamVodStream>(R"([{"x":99999999999999999999},{"rating":1e999,"num":1}])", 7);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[1].rating(), std::nullopt);
    EXPECT_EQ(rows[1].num, 1);
}

} // namespace
} // namespace ondavia
