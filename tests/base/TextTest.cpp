#include "base/Text.h"

#include <gtest/gtest.h>

namespace ondavia {
namespace {

TEST(Text, trimsWhiteSpaceAndLineEndsOfUnicodeAtBothEnds) {
    EXPECT_EQ(trimmedWhitespaceAndNewlines(" \t\r\n a b \n"), "a b");
    EXPECT_EQ(trimmedWhitespaceAndNewlines("\u00a0\u2003x\u2028\u0085"), "x");
    EXPECT_EQ(trimmedWhitespaceAndNewlines(" \n "), "");
    EXPECT_EQ(trimmedWhitespaceAndNewlines(""), "");
    EXPECT_EQ(trimmedWhitespaceAndNewlines("\xff "), "\xff");
}

TEST(Text, readsDecimalIntegersAndNothingElse) {
    EXPECT_EQ(parseDecimalInteger("12"), 12);
    EXPECT_EQ(parseDecimalInteger("+12"), 12);
    EXPECT_EQ(parseDecimalInteger("-12"), -12);
    EXPECT_EQ(parseDecimalInteger("9223372036854775807"), INT64_MAX);
    for (const char* text : {"", "+", "-", "+-1", " 1", "1 ", "1.0", "0x1", "9223372036854775808", "um"}) {
        EXPECT_EQ(parseDecimalInteger(text), std::nullopt) << text;
    }
}

TEST(Text, countsGraphemeClustersAsCharacters) {
    EXPECT_EQ(firstCharacters("2015-03-01", 4), "2015");
    EXPECT_EQ(firstCharacters("201", 4), std::nullopt);
    EXPECT_EQ(firstCharacters("2015", 4), "2015");
    EXPECT_EQ(firstCharacters("e\u0301abc", 2), "e\u0301a");
    EXPECT_EQ(firstCharacters("\r\nab", 2), "\r\na");
}

TEST(Text, tellsWellFormedUtf8) {
    EXPECT_TRUE(isValidUtf8("Programação"));
    EXPECT_TRUE(isValidUtf8(""));
    EXPECT_FALSE(isValidUtf8("\xc3"));
    EXPECT_FALSE(isValidUtf8("\xed\xa0\x80"));
}

} // namespace
} // namespace ondavia
