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

TEST(Text, lowersPlainLettersAlone) {
    EXPECT_EQ(asciiLowercase("AZaz@[09ÇÃ"), "azaz@[09ÇÃ");
    EXPECT_EQ(asciiLowercase(""), "");
}

TEST(Text, writesCodePointsInUtf8) {
    EXPECT_EQ(utf8Of('a'), "a");
    EXPECT_EQ(utf8Of(0), std::string(1, '\0'));
    EXPECT_EQ(utf8Of(0x7F) + utf8Of(0x80) + utf8Of(0xE7), "\x7F\u0080\u00e7");
    EXPECT_EQ(utf8Of(0x7FF) + utf8Of(0x800) + utf8Of(0xFFFD), "\u07ff\u0800\ufffd");
    EXPECT_EQ(utf8Of(0x10000) + utf8Of(0x10FFFF), "\U00010000\U0010ffff");
    EXPECT_FALSE(isValidUtf8(utf8Of(0xD800)));
}

} // namespace
} // namespace ondavia
