#include "subtitles/SRTParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <clocale>
#include <cmath>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// What is left of a block with this timing line.
std::vector<SubtitleCue> timed(const std::string& timing) {
    return SRTParser::parse(timing + "\nOlá");
}

/// The start of a cue whose first timestamp is this one; nothing when it is none.
std::optional<double> startOf(const std::string& timestamp) {
    const auto cues = timed(timestamp + " --> 00:00:09,000");
    return cues.empty() ? std::nullopt : std::optional(cues.front().start);
}

std::vector<std::string> textsOf(const std::string& file) {
    std::vector<std::string> texts;
    for (const auto& cue : SRTParser::parse(file)) {
        texts.push_back(cue.text);
    }
    return texts;
}

TEST(SRTParser, ReadsNothingOutOfNothing) {
    EXPECT_THAT(SRTParser::parse(""), IsEmpty());
    EXPECT_THAT(SRTParser::parse("\xEF\xBB\xBF"), IsEmpty());
    EXPECT_THAT(SRTParser::parse("\n\n\n\n"), IsEmpty());
}

TEST(SRTParser, ReadsBlocksOfNumberTimesAndText) {
    EXPECT_THAT(SRTParser::parse("1\n00:00:01,500 --> 00:00:02,750\nOlá\nmundo\n\n"
                                 "2\n01:02:03,000 --> 01:02:04,000\nAdeus\n"),
                ElementsAre(SubtitleCue{1.5, 2.75, "Olá\nmundo"}, SubtitleCue{3723, 3724, "Adeus"}));
}

TEST(SRTParser, TakesAPointForAComma) {
    EXPECT_EQ(startOf("00:00:01,500"), 1.5);
    EXPECT_EQ(startOf("00:00:01.500"), 1.5);
}

TEST(SRTParser, SkipsOneByteOrderMark) {
    EXPECT_THAT(textsOf("\xEF\xBB\xBF"
                        "00:00:01,000 --> 00:00:02,000\nOlá"),
                ElementsAre("Olá"));
    EXPECT_THAT(textsOf("\xEF\xBB\xBF\xEF\xBB\xBF"
                        "00:00:01,000 --> 00:00:02,000\nOlá"),
                IsEmpty());
}

TEST(SRTParser, TakesEveryKindOfLineEnd) {
    EXPECT_THAT(textsOf("1\r\n00:00:01,000 --> 00:00:02,000\r\nOlá\r\nmundo\r\n\r\n"
                        "2\r00:00:03,000 --> 00:00:04,000\rAdeus\r\r"
                        "3\n00:00:05,000 --> 00:00:06,000\rFim\n"),
                ElementsAre("Olá\nmundo", "Adeus", "Fim"));
    EXPECT_THAT(textsOf("00:00:01,000 --> 00:00:02,000\nUm\n\r\n00:00:03,000 --> 00:00:04,000\nDois"),
                ElementsAre("Um", "Dois"))
        << "an end of each kind, one after the other";
}

TEST(SRTParser, SortsByStartAndKeepsTheOrderOfTheFileBesides) {
    EXPECT_THAT(textsOf("00:00:05,000 --> 00:00:06,000\nlast\n\n00:00:01,000 --> 00:00:09,000\nfirst\n\n"
                        "00:00:02,000 --> 00:00:09,000\none\n\n00:00:02,000 --> 00:00:03,000\ntwo"),
                ElementsAre("first", "one", "two", "last"));
}

TEST(SRTParser, LosesTheHeaderAndTheNotesOfWebVTTInBlocksOfTheirOwn) {
    EXPECT_THAT(textsOf("WEBVTT\n\nNOTE a word\nabout it\n\nSTYLE\n::cue { color: red }\n\n"
                        "00:00:01.000 --> 00:00:02.000\nOlá"),
                ElementsAre("Olá"));
}

TEST(SRTParser, LosesACueRightBehindTheHeader) {
    EXPECT_THAT(textsOf("WEBVTT\n00:00:01.000 --> 00:00:02.000\nlost\n\n00:00:03.000 --> 00:00:04.000\nkept"),
                ElementsAre("kept"));
}

TEST(SRTParser, LosesACueWhoseNameIsNoNumber) {
    EXPECT_THAT(textsOf("intro\n00:00:01.000 --> 00:00:02.000\nlost"), IsEmpty());
}

TEST(SRTParser, LosesACueWithSettingsBehindItsTimes) {
    EXPECT_THAT(timed("00:00:01.000 --> 00:00:02.000 align:start"), IsEmpty());
}

TEST(SRTParser, LosesTheShortTimesOfWebVTT) {
    EXPECT_THAT(timed("00:01.000 --> 00:02.000"), IsEmpty());
}

TEST(SRTParser, NeedsTextAndNoNumber) {
    EXPECT_THAT(textsOf("1\n00:00:01,000 --> 00:00:02,000"), IsEmpty());
    EXPECT_THAT(textsOf("1\n00:00:01,000 --> 00:00:02,000\n"), IsEmpty());
    EXPECT_THAT(textsOf("1\n00:00:01,000 --> 00:00:02,000\n \t \n"), IsEmpty());
    EXPECT_THAT(textsOf("00:00:01,000 --> 00:00:02,000\nOlá"), ElementsAre("Olá"));
    EXPECT_THAT(textsOf("1"), IsEmpty());
    EXPECT_THAT(textsOf("1\n"), IsEmpty());
}

TEST(SRTParser, TakesAnyWholeNumberWithBlanksAround) {
    for (const char* number : {"7", " 7\t", "+7", "-7", "0007", "9223372036854775807"}) {
        EXPECT_THAT(textsOf(std::string(number) + "\n00:00:01,000 --> 00:00:02,000\nOlá"), ElementsAre("Olá"))
            << number;
    }
    for (const char* other : {"7.", "7 a", "+-7", "9223372036854775808", "٧", ""}) {
        EXPECT_THAT(textsOf(std::string(other) + "\n00:00:01,000 --> 00:00:02,000\nOlá"), IsEmpty()) << other;
    }
}

TEST(SRTParser, LosesTheBlockBehindTwoEmptyLines) {
    EXPECT_THAT(textsOf("00:00:01,000 --> 00:00:02,000\nUm\n\n\n00:00:03,000 --> 00:00:04,000\nlost\n\n"
                        "00:00:05,000 --> 00:00:06,000\nTrês"),
                ElementsAre("Um", "Três"));
    EXPECT_THAT(textsOf("00:00:01,000 --> 00:00:02,000\nUm\n\n\n\n00:00:03,000 --> 00:00:04,000\nDois"),
                ElementsAre("Um", "Dois"))
        << "three of them are a block of nothing";
}

TEST(SRTParser, NeedsExactlyTwoTimesOfThreeFields) {
    for (const char* timing :
         {"00:00:01,000 -> 00:00:02,000", "00:00:01,000", "00:00:01,000 --> 00:00:02,000 --> 00:00:03,000",
          "00:00:00:01,000 --> 00:00:02,000", "--> 00:00:02,000", "00:00:01,000 -->",
          "a:b:c --> 00:00:02,000", "00::01 --> 00:00:02", "00:00:1,0,0 --> 00:00:02",
          "00: 00:01 --> 00:00:02", "00:00:01x --> 00:00:02", "00:00:01 :--> 00:00:02"}) {
        EXPECT_THAT(timed(timing), IsEmpty()) << timing;
    }
    EXPECT_THAT(timed("\t00:00:01,000-->00:00:02,000  "), ElementsAre(SubtitleCue{1, 2, "Olá"}));
    EXPECT_THAT(SRTParser::parse(std::string("00:00:01\0 --> 00:00:02\nOlá", 26)), IsEmpty())
        << "a zero byte";
}

TEST(SRTParser, LetsNumbersOfAnySizeAndSignThrough) {
    EXPECT_EQ(startOf("00:99:75,000"), 99 * 60 + 75);
    EXPECT_EQ(startOf("-1:00:00"), -3600);
    EXPECT_EQ(startOf("1.5:00:00"), 5400);
    EXPECT_EQ(startOf("+1:-1:+1"), 3600 - 60 + 1);
    EXPECT_EQ(startOf("99999999999:00:00"), 99999999999.0 * 3600);
    EXPECT_EQ(startOf("0:0:1"), 1);
    EXPECT_THAT(timed("00:00:09,000 --> 00:00:01,000"), ElementsAre(SubtitleCue{9, 1, "Olá"}));
}

TEST(SRTParser, SortsAlsoWhereATimeIsNoNumber) {
    const auto texts = textsOf("0:0:2 --> 0:0:9\ntwo\n\nnan:0:0 --> 0:0:9\nnone\n\n0:0:1 --> 0:0:9\none");
    EXPECT_THAT(texts, ElementsAre("one", "two", "none"));
}

TEST(SRTParser, ReadsNumbersTheSameInEveryLanguage) {
    const std::string former = std::setlocale(LC_NUMERIC, nullptr);
    bool isSet = false;
    for (const char* name : {"pt_PT.UTF-8", "de_DE.UTF-8", "fr_FR.UTF-8", "C.UTF-8"}) {
        isSet = isSet || std::setlocale(LC_NUMERIC, name) != nullptr;
    }
    EXPECT_TRUE(isSet);
    EXPECT_EQ(startOf("00:00:01,500"), 1.5);
    std::setlocale(LC_NUMERIC, former.c_str());
}

TEST(SRTParser, TakesTagsAwayAndLeavesWhatTheyHold) {
    const auto text = [](const std::string& raw) {
        const auto texts = textsOf("00:00:01,000 --> 00:00:02,000\n" + raw);
        return texts.empty() ? "nothing" : texts.front();
    };
    EXPECT_EQ(text("<i>O mar</i> <font color=\"red\">leva</font>"), "O mar leva");
    EXPECT_EQ(text("2 > 1"), "2  1");
    EXPECT_EQ(text("1 < 2\nand the rest"), "1");
    EXPECT_EQ(text("<<b>>bold"), "bold");
    EXPECT_EQ(text("a &amp; b {\\an8}"), "a &amp; b {\\an8}");
    EXPECT_EQ(text("<i></i>"), "nothing");
    EXPECT_EQ(text("<i>\nOlá\n</i>"), "Olá") << "emptied lines at an end go";
    EXPECT_EQ(text("Olá\n<i></i>\nmundo"), "Olá\n\nmundo") << "and stay in between";
    EXPECT_EQ(text("\u00A0\u2003 Olá\t"), "Olá") << "all of Unicode's white space";
}

TEST(SRTParser, ReadsALargeFileInOneGo) {
    constexpr int count = 100000;
    std::string file;
    for (int cue = count; cue > 0; --cue) {
        file += "0:0:" + std::to_string(cue) + " --> 0:0:" + std::to_string(cue + 1) + "\nx\n\n";
    }
    const auto cues = SRTParser::parse(file);
    ASSERT_EQ(cues.size(), std::size_t{count});
    EXPECT_EQ(cues.front().start, 1);
    EXPECT_EQ(cues.back().start, count);
    EXPECT_THAT(SRTParser::parse(std::string(1000000, '\n')), IsEmpty());
    EXPECT_THAT(SRTParser::parse(std::string(1000000, ':')), IsEmpty());
}

} // namespace
} // namespace ondavia::testing
