#include "TrailingYearReference.h"

#include <gtest/gtest.h>
#include <random>

namespace ondavia {

void PrintTo(const TrailingYear& found, std::ostream* output) {
    *output << found.nameBytes << " bytes, year \"" << found.year << '"';
}

namespace {

std::pair<std::string, std::string> split(std::string_view title) {
    const auto found = findTrailingYear(title);
    return found ? std::pair(std::string(title.substr(0, found->nameBytes)), found->year)
                 : std::pair(std::string(title), std::string("none"));
}

using Parts = std::pair<std::string, std::string>;

TEST(TrailingYear, isCutOffWithTheWhiteSpaceAroundIt) {
    EXPECT_EQ(split("Matrix (1999)"), Parts("Matrix", "1999"));
    EXPECT_EQ(split("Matrix(1999)"), Parts("Matrix", "1999"));
    EXPECT_EQ(split("Matrix \t (1999) \t "), Parts("Matrix", "1999"));
    EXPECT_EQ(split("Matrix (1998) (1999)"), Parts("Matrix (1998)", "1999"));
    EXPECT_EQ(split("(1999)"), Parts("", "1999"));
    EXPECT_EQ(split("  (1999)"), Parts("", "1999"));
    EXPECT_EQ(split("Cora\xC3\xA7\xC3\xA3o (2001)"), Parts("Cora\xC3\xA7\xC3\xA3o", "2001"));
    EXPECT_EQ(split("Av\xC3\xB3 (2001)"), Parts("Av\xC3\xB3", "2001"));
}

TEST(TrailingYear, standsAtTheEndInRoundBracketsOnly) {
    for (const char* title : {"1999 Matrix", "(1999) Matrix", "Matrix (19999)", "Matrix (199)", "Matrix 1999",
                              "Matrix [1999]", "Matrix (1999", "Matrix 1999)", "Matrix ( 1999)",
                              "Matrix (1999 )", "Matrix (19a9)", "", ")", "(1999).", "Matrix (1999) HD"}) {
        EXPECT_EQ(split(title), Parts(title, "none"));
    }
}

TEST(TrailingYear, followsUnicodeInSpacesAndDigits) {
    EXPECT_EQ(split("Matrix\xC2\xA0(1999)\xE3\x80\x80"), Parts("Matrix", "1999"));
    EXPECT_EQ(split("M (\xD9\xA1\xD9\xA9\xD9\xA9\xD9\xA9)"), Parts("M", "\xD9\xA1\xD9\xA9\xD9\xA9\xD9\xA9"));
}

TEST(TrailingYear, isOddWhereALineEndStandsAroundTheBrackets) {
    EXPECT_EQ(split("Matrix (1999)\n"), Parts("Matrix", "1999)"));
    EXPECT_EQ(split("Matrix (1999)\r\n"), Parts("Matrix", "1999)"));
    EXPECT_EQ(split("Matrix\n(1999)"), Parts("Matrix", "(1999"));
    EXPECT_EQ(split("Matrix\r\n(1999)\r\n"), Parts("Matrix", "(1999)"));
    EXPECT_EQ(split("Matrix (1999) \n"), Parts("Matrix", "1999) "));
}

TEST(TrailingYear, isFoundInLinearTime) {
    const std::string blanks(2'000'000, ' ');
    EXPECT_EQ(findTrailingYear(blanks + "x)" + blanks), std::nullopt);
    EXPECT_EQ(findTrailingYear(blanks + "(1999)" + blanks), (TrailingYear{0, "1999"}));
}

TEST(TrailingYear, survivesMalformedText) {
    EXPECT_EQ(findTrailingYear("\xFF\xFE (1999)"), (TrailingYear{2, "1999"}));
    EXPECT_EQ(findTrailingYear("a\xC3"), std::nullopt);
    EXPECT_EQ(findTrailingYear("(\x80\x80\x80\x80)"), std::nullopt);
}

/// Every character that is white space or a digit to the regular expression is one to us.
TEST(TrailingYear, agreesWithTheRegularExpressionOnEachCharacter) {
    for (UChar32 character = 1; character <= 0x10FFFF; ++character) {
        const bool isInteresting = u_isUWhiteSpace(character) || u_isspace(character) ||
                                   u_isdigit(character) || u_iscntrl(character) || character % 97 == 0;
        if (!isInteresting || U_IS_SURROGATE(character)) {
            continue;
        }
        std::string text;
        icu::UnicodeString(character).toUTF8String(text);
        for (const std::string& title : {"A" + text + "(1999)", "A(1999)" + text, "A(199" + text + ")",
                                         "A" + text + "\n(1999)\r" + text}) {
            ASSERT_EQ(findTrailingYear(title), testing::trailingYearByRegex(title)) << std::hex << character;
        }
    }
}

TEST(TrailingYear, agreesWithTheRegularExpressionOnGeneratedTitles) {
    const std::vector<std::string> pieces{"A",
                                          "Matrix",
                                          " ",
                                          " ",
                                          "\t",
                                          "\n",
                                          "\r",
                                          "\r\n",
                                          "\v",
                                          "\f",
                                          "(",
                                          ")",
                                          "(",
                                          ")",
                                          "1999",
                                          "2024",
                                          "(1999)",
                                          "(2024)",
                                          "9",
                                          "12345",
                                          "\xC2\xA0",
                                          "\xE2\x80\x83",
                                          "\xE2\x80\xA8",
                                          "\xE2\x80\xA9",
                                          "\xC2\x85",
                                          "\xD9\xA1",
                                          "\xC3\xA7",
                                          "e\xCC\x81",
                                          "\xF0\x9F\x98\x80",
                                          "\xE2\x80\x8B",
                                          "\x1C",
                                          "\x1F"};
    std::mt19937 random(20260301);
    std::uniform_int_distribution<std::size_t> piece(0, pieces.size() - 1);
    std::uniform_int_distribution<int> length(0, 9);
    int matches = 0;
    for (int round = 0; round < 50'000; ++round) {
        std::string title;
        for (int left = length(random); left > 0; --left) {
            title += pieces[piece(random)];
        }
        const auto expected = testing::trailingYearByRegex(title);
        matches += expected ? 1 : 0;
        ASSERT_EQ(findTrailingYear(title), expected) << ::testing::PrintToString(title);
    }
    EXPECT_GT(matches, 1000);
}

} // namespace
} // namespace ondavia
