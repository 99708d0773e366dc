#include "playback/StreamMeta.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace ondavia::testing {
namespace {

TEST(ParseMetaInt, TakesIntegersOfEveryWidth) {
    EXPECT_EQ(parseMetaInt(3), 3);
    EXPECT_EQ(parseMetaInt(-3), -3);
    EXPECT_EQ(parseMetaInt(3U), 3);
    EXPECT_EQ(parseMetaInt(qlonglong{5000000000}), 5000000000);
    EXPECT_EQ(parseMetaInt(qulonglong{5000000000}), 5000000000);
    EXPECT_EQ(parseMetaInt(QVariant::fromValue<short>(3)), 3);
    EXPECT_EQ(parseMetaInt(QVariant::fromValue<long>(3)), 3);
    EXPECT_EQ(parseMetaInt(QVariant::fromValue<char>('A')), 65);
    EXPECT_EQ(parseMetaInt(QVariant::fromValue<signed char>(-3)), -3);
    EXPECT_EQ(parseMetaInt(QVariant::fromValue<unsigned char>(200)), 200);
    EXPECT_EQ(parseMetaInt(true), 1);
    EXPECT_EQ(parseMetaInt(std::numeric_limits<qulonglong>::max()), std::numeric_limits<qlonglong>::max());
}

TEST(ParseMetaInt, TakesDecimalTexts) {
    EXPECT_EQ(parseMetaInt(QStringLiteral("3")), 3);
    EXPECT_EQ(parseMetaInt(QStringLiteral("+3")), 3);
    EXPECT_EQ(parseMetaInt(QStringLiteral("-12")), -12);
    for (const auto* text : {"", " 3", "3 ", "3.0", "0x3", "três", "+", "9223372036854775808"}) {
        EXPECT_EQ(parseMetaInt(QString::fromUtf8(text)), std::nullopt) << text;
    }
}

TEST(ParseMetaInt, CutsFractions) {
    EXPECT_EQ(parseMetaInt(3.9), 3);
    EXPECT_EQ(parseMetaInt(-3.9), -3);
    EXPECT_EQ(parseMetaInt(3.5F), 3);
    EXPECT_EQ(parseMetaInt(1e300), std::numeric_limits<qlonglong>::max());
    EXPECT_EQ(parseMetaInt(-1e300), std::numeric_limits<qlonglong>::min());
    EXPECT_EQ(parseMetaInt(std::nan("")), 0);
}

TEST(ParseMetaInt, TakesNothingElse) {
    EXPECT_EQ(parseMetaInt(QVariant()), std::nullopt);
    EXPECT_EQ(parseMetaInt(QVariantList{1}), std::nullopt);
    EXPECT_EQ(parseMetaInt(QVariantMap{{QStringLiteral("stream_idx"), 1}}), std::nullopt);
}

TEST(StreamsOf, AreNoneWhereTheListIsEmpty) {
    EXPECT_TRUE(streamsOf({{QStringLiteral("streams"), QVariantList()}}).empty());
}

} // namespace
} // namespace ondavia::testing
