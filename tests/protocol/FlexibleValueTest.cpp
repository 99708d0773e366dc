#include "WireSupport.h"

namespace ondavia {
namespace {

using testing::FatalFaultRaised;
using testing::FatalFaultTrap;

using Text = std::optional<std::string>;
using Integer = std::optional<std::int64_t>;

/// What a movie's rating becomes when the server sends `json` for it.
Text flexibleText(const std::string& json) {
    const auto rows =
        decodeReply<std::vector<XtreamVodStream>>(R"([{"name":"before","rating":)" + json + R"(,"num":7}])");
    EXPECT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows.at(0).name, "before");
    EXPECT_EQ(rows.at(0).num, 7);
    return rows.at(0).rating();
}

Integer flexibleInteger(const std::string& json) {
    const auto info = decodeReply<XtreamSeriesInfo>(R"({"episodes":{"1":[{"title":"before","episode_num":)" +
                                                    json + R"(,"season":3}]}})");
    const auto& episode = info.episodes.value().at("1").at(0);
    EXPECT_EQ(episode.title, "before");
    EXPECT_EQ(episode.season, 3);
    return episode.episodeNum();
}

Integer strictInteger(const std::string& json) {
    return decodeReply<std::vector<XtreamLiveStream>>(R"([{"stream_id":)" + json + "}]").at(0).streamId;
}

TEST(FlexibleString, takesTextAsItIs) {
    EXPECT_EQ(flexibleText(R"("7.5")"), "7.5");
    EXPECT_EQ(flexibleText(R"("")"), "");
    EXPECT_EQ(flexibleText(R"("a\u0000\"\u00e7\n")"), std::string("a\0\"\xC3\xA7\n", 6));
}

TEST(FlexibleString, writesWholeNumbersWithoutAPoint) {
    EXPECT_EQ(flexibleText("7"), "7");
    EXPECT_EQ(flexibleText("7.0"), "7");
    EXPECT_EQ(flexibleText("7e2"), "700");
    EXPECT_EQ(flexibleText("0"), "0");
    EXPECT_EQ(flexibleText("-0.0"), "0");
    EXPECT_EQ(flexibleText("-12"), "-12");
}

TEST(FlexibleString, writesFractionsAsShortAsPossible) {
    EXPECT_EQ(flexibleText("7.5"), "7.5");
    EXPECT_EQ(flexibleText("7.50"), "7.5");
    EXPECT_EQ(flexibleText("0.1"), "0.1");
    EXPECT_EQ(flexibleText("-8.123"), "-8.123");
    EXPECT_EQ(flexibleText("0.0001"), "0.0001");
    EXPECT_EQ(flexibleText("0.00012345678901234567"), "0.00012345678901234567");
    EXPECT_EQ(flexibleText("1234567890123.25"), "1234567890123.25");
    EXPECT_EQ(flexibleText("3.1415926535897932384626433832795"), "3.141592653589793");
    EXPECT_EQ(flexibleText("0.00001"), "1e-05");
}

TEST(FlexibleString, readsEveryNumberAsA64BitFloat) {
    EXPECT_EQ(flexibleText("9007199254740993"), "9007199254740992");
    EXPECT_EQ(flexibleText("-9223372036854775808"), "-9223372036854775808");
    EXPECT_EQ(flexibleText("9223372036854774784"), "9223372036854774784");
    EXPECT_EQ(flexibleText("1e-400"), "0");
}

TEST(FlexibleString, hasNoOutcomeForAWholeNumberBeyond64Bits) {
    const FatalFaultTrap trap;
    EXPECT_THROW(flexibleText("9223372036854775807"), FatalFaultRaised);
    EXPECT_THROW(flexibleText("18446744073709551615"), FatalFaultRaised);
    EXPECT_THROW(flexibleText("18446744073709551616"), FatalFaultRaised);
    EXPECT_THROW(flexibleText("-123456789012345678901234567890"), FatalFaultRaised);
    EXPECT_THROW(flexibleText("1e300"), FatalFaultRaised);
}

TEST(FlexibleString, letsEverythingElseThatIsWrongWithTheReplyComeFirst) {
    const FatalFaultTrap trap;
    const std::string fatal = R"({"rating":1e300})";
    using Movies = std::vector<XtreamVodStream>;
    EXPECT_THROW((void)decodeReply<Movies>("[" + fatal + "]"), FatalFaultRaised);
    EXPECT_TRUE(testing::refusal<Movies>("[" + fatal + R"(,{"num":"x"}])"));
    EXPECT_TRUE(testing::refusal<Movies>("[" + fatal));
    EXPECT_TRUE(testing::refusal<Movies>("[" + fatal + "] x"));
    const std::string series = R"({"episodes":{"1":[{"info":)" + fatal + R"(}]},"info":)";
    EXPECT_THROW((void)decodeReply<XtreamSeriesInfo>(series + "{}}"), FatalFaultRaised);
    EXPECT_TRUE(testing::refusal<XtreamSeriesInfo>(series + "7}"));
}

TEST(FlexibleString, isAbsentForANumberThatNoFloatHolds) {
    EXPECT_EQ(flexibleText("1e400"), std::nullopt);
    EXPECT_EQ(flexibleText("-1e400"), std::nullopt);
    EXPECT_EQ(flexibleText(std::string(400, '9')), std::nullopt);
    EXPECT_EQ(flexibleText("1e99999999999999999999"), std::nullopt);
}

TEST(FlexibleString, isAbsentForEverythingElse) {
    EXPECT_EQ(flexibleText("null"), std::nullopt);
    EXPECT_EQ(flexibleText("true"), std::nullopt);
    EXPECT_EQ(flexibleText("false"), std::nullopt);
    EXPECT_EQ(flexibleText("[]"), std::nullopt);
    EXPECT_EQ(flexibleText(R"(["7"])"), std::nullopt);
    EXPECT_EQ(flexibleText(R"({"value":7})"), std::nullopt);
}

TEST(FlexibleInt, takesIntegers) {
    EXPECT_EQ(flexibleInteger("12"), 12);
    EXPECT_EQ(flexibleInteger("-3"), -3);
    EXPECT_EQ(flexibleInteger("12.0"), 12);
    EXPECT_EQ(flexibleInteger("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
}

TEST(FlexibleInt, readsDecimalTexts) {
    EXPECT_EQ(flexibleInteger(R"("12")"), 12);
    EXPECT_EQ(flexibleInteger(R"("+12")"), 12);
    EXPECT_EQ(flexibleInteger(R"("-12")"), -12);
    EXPECT_EQ(flexibleInteger(R"("007")"), 7);
}

TEST(FlexibleInt, isAbsentForTextsThatAreNoInteger) {
    for (const char* json : {R"("")", R"("abc")", R"(" 12")", R"("12 ")", R"("1.0")", R"("+-1")", R"("0x1")",
                             R"("9223372036854775808")"}) {
        EXPECT_EQ(flexibleInteger(json), std::nullopt) << json;
    }
}

TEST(FlexibleInt, isAbsentForEverythingElse) {
    for (const char* json : {"null", "3.5", "true", "[]", "[1]", "{}", "1e400", "9223372036854775808",
                             "123456789012345678901234567890"}) {
        EXPECT_EQ(flexibleInteger(json), std::nullopt) << json;
    }
}

TEST(StrictInteger, takesNumbersOfExactIntegerValue) {
    EXPECT_EQ(strictInteger("7"), 7);
    EXPECT_EQ(strictInteger("7.0"), 7);
    EXPECT_EQ(strictInteger("1e2"), 100);
    EXPECT_EQ(strictInteger("null"), std::nullopt);
    EXPECT_EQ(strictInteger("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(strictInteger("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
}

/// Of which the nearest float is an integer, or another one.
const char* const exactIntegers[][2] = {
    {"9223372036854775807.0", "9223372036854775807"},
    {"9223372036854775807.000e0", "9223372036854775807"},
    {"-9223372036854775808.0", "-9223372036854775808"},
    {"9007199254740993.0", "9007199254740993"},
    {"9.223372036854775807e18", "9223372036854775807"},
    {"92233720368547758070e-1", "9223372036854775807"},
    {"1e3", "1000"},
    {"1E+18", "1000000000000000000"},
    {"1200e-2", "12"},
    {"0.0012e4", "12"},
    {"-0.0", "0"},
    {"-0", "0"},
    {"0e999999999999999999999", "0"},
    {"0.0e-999999999999999999999", "0"},
};

const char* const noIntegers[] = {
    "-9223372036854775809",
    "9223372036854775808.0",
    "9223372036854775807.5",
    "3.00000000000000000001",
    "-3.00000000000000000001",
    "0.99999999999999999999999",
    "9223372036854775806.9999",
    "1E400",
    "-1e400",
    "1e19",
    "1e999999999999999999999",
    "1e-1",
    "1e-999999999999999999999",
    "12345678901234567890123.0",
    "1200e-3",
};

TEST(StrictInteger, isJudgedByItsTextAndNotByTheNearestFloat) {
    for (const auto& [json, integer] : exactIntegers) {
        EXPECT_EQ(strictInteger(json), std::stoll(integer)) << json;
    }
    EXPECT_EQ(strictInteger("7." + std::string(5000, '0')), 7);
    EXPECT_EQ(strictInteger("7" + std::string(5000, '0') + "e-5000"), 7);
    EXPECT_EQ(strictInteger("0." + std::string(5000, '0') + "7e5001"), 7);
    for (const char* json : noIntegers) {
        const auto error = testing::decodingErrorOf([&] { strictInteger(json); });
        ASSERT_TRUE(error) << json;
        EXPECT_EQ(error->keyPath(), "stream_id") << json;
    }
    EXPECT_TRUE(testing::decodingErrorOf([] { strictInteger("7." + std::string(5000, '0') + "1"); }));
}

TEST(StrictInteger, isJudgedAlikeInAListThatIsDecodedWhileItArrives) {
    for (const auto& [json, integer] : exactIntegers) {
        const auto rows = testing::decodeInPieces<XtreamLiveStream>(
            R"([{"stream_id":1},{"name":"a","stream_id":)" + std::string(json) + R"(},{"stream_id":2}])", 3,
            0);
        ASSERT_EQ(rows.size(), 3U);
        EXPECT_EQ(rows[1].streamId, std::stoll(integer)) << json;
        EXPECT_EQ(rows[1].name, "a");
    }
    for (const char* json : noIntegers) {
        const auto error = testing::decodingErrorOf([&] {
            testing::decodeInPieces<XtreamLiveStream>(
                R"([{},{"category_ids":[1,)" + std::string(json) + "]}]", 3);
        });
        ASSERT_TRUE(error) << json;
        EXPECT_EQ(error->row(), 1) << json;
        EXPECT_EQ(error->keyPath(), "category_ids[1]") << json;
    }
}

TEST(FlexibleInt, isJudgedByItsTextAndNotByTheNearestFloat) {
    for (const auto& [json, integer] : exactIntegers) {
        EXPECT_EQ(flexibleInteger(json), std::stoll(integer)) << json;
    }
    for (const char* json : noIntegers) {
        EXPECT_EQ(flexibleInteger(json), std::nullopt) << json;
    }
}

TEST(FlexibleString, readsTheNearestFloatAlsoBesideAnExactInteger) {
    const auto rows = decodeReply<std::vector<XtreamVodStream>>(
        R"([{"num":7.0,"rating":3.00000000000000000001,"rating_5based":9007199254740993.0,"year":7.50}])");
    EXPECT_EQ(rows.at(0).num, 7);
    EXPECT_EQ(rows.at(0).rating(), "3");
    EXPECT_EQ(rows.at(0).ratingFive(), "9007199254740992");
    EXPECT_EQ(rows.at(0).year(), "7.5");
}

TEST(StrictInteger, refusesEverythingElse) {
    for (const char* json : {"7.5", R"("7")", "true", "[]", "{}", "9223372036854775808",
                             "18446744073709551616", "1e19", "1e400"}) {
        const auto error = testing::decodingErrorOf([&] { strictInteger(json); });
        ASSERT_TRUE(error) << json;
        EXPECT_EQ(error->keyPath(), "stream_id") << json;
        EXPECT_EQ(error->expected(), "integer") << json;
    }
}

TEST(LargeNumbers, areIgnoredUnderUnknownKeys) {
    const auto rows = decodeReply<std::vector<XtreamLiveStream>>(
        R"([{"unknown":123456789012345678901234567890,"other":[1e999],"name":"a 99999999999999999999999 \" b"}])");
    EXPECT_EQ(rows.at(0).name, "a 99999999999999999999999 \" b");
}

TEST(LargeNumbers, doNotHideMalformedOnes) {
    for (const char* json : {"[{\"a\":1e400,\"b\":01}]", "[{\"a\":1e400,\"b\":1.}]",
                             "[{\"a\":123456789012345678901x}]", "[{\"a\":-}]", "[{\"a\":1e400}"}) {
        EXPECT_TRUE(testing::refusal<std::vector<XtreamLiveStream>>(json)) << json;
    }
}

} // namespace
} // namespace ondavia
