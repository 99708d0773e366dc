#include "GuideSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

TEST(XMLTVParser, ReadsEveryFieldOfAProgramme) {
    const auto programs = parsed(
        xmltv("<channel id=\"c1\"><display-name>Canal</display-name></channel>"
              "<programme start=\"20240115120000 +0100\" stop=\"20240115123000 -0230\" channel=\" c1 \">"
              "<title lang=\"pt\"> Um jogo\n</title><sub-title>no</sub-title><desc>\tDuas  palavras </desc>"
              "<category>Drama</category><icon src=\"x\"/></programme>"));
    ASSERT_THAT(programs, SizeIs(1));
    const EPGProgram& program = programs.front();
    EXPECT_EQ(program.channelId, " c1 ");
    EXPECT_EQ(program.title, "Um jogo");
    EXPECT_EQ(program.desc, "Duas  palavras");
    EXPECT_EQ(program.category, "Drama");
    EXPECT_EQ(program.start, utc(2024, 1, 15, 11, 0));
    EXPECT_EQ(program.stop, utc(2024, 1, 15, 15, 0));
}

TEST(XMLTVParser, KeepsDocumentOrderAndGivesEachRowItsOwnUpperCaseUUID) {
    std::string body;
    for (int number = 0; number < 2000; ++number) {
        body += programme("<title>" + std::to_string(number) + "</title>");
    }
    const auto programs = parsed(xmltv(body));
    ASSERT_THAT(programs, SizeIs(2000));
    std::set<std::string> ids;
    for (std::size_t index = 0; index < programs.size(); ++index) {
        EXPECT_EQ(programs[index].title, std::to_string(index));
        EXPECT_THAT(
            programs[index].id,
            ::testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
        ids.insert(programs[index].id);
    }
    EXPECT_THAT(ids, SizeIs(2000));
}

TEST(XMLTVParser, DropsAProgrammeWithoutTitle) {
    EXPECT_THAT(
        parsed(xmltv(programme("<title></title>") + programme("<title/>") + programme("<desc>d</desc>"))),
        IsEmpty());
}

TEST(XMLTVParser, DropsAProgrammeWithoutAReadableStartOrStop) {
    const std::string rest = " channel=\"c\"><title>T</title></programme>";
    EXPECT_THAT(parsed(xmltv("<programme start=\"20240115120000 +0000\"" + rest)), IsEmpty());
    EXPECT_THAT(parsed(xmltv("<programme stop=\"20240115120000 +0000\"" + rest)), IsEmpty());
    EXPECT_THAT(parsed(xmltv("<programme start=\"20240115120000\" stop=\"20240115130000 +0000\"" + rest)),
                IsEmpty());
    EXPECT_THAT(parsed(xmltv("<programme start=\"20240115120000 +0000\" stop=\"soon\"" + rest)), IsEmpty());
    EXPECT_THAT(parsed(xmltv("<programme><title>T</title></programme>")), IsEmpty());
}

TEST(XMLTVParser, GoesOnAfterAMalformedDate) {
    EXPECT_THAT(titlesOf(parsed(xmltv("<programme start=\"x\" stop=\"y\"><title>bad</title></programme>" +
                                      programme("<title>good</title>")))),
                ElementsAre("good"));
}

TEST(XMLTVParser, KeepsAProgrammeWithoutChannelUnderTheEmptyText) {
    const auto programs = parsed(xmltv("<programme " + validTimes + "><title>T</title></programme>"));
    ASSERT_THAT(programs, SizeIs(1));
    EXPECT_EQ(programs.front().channelId, "");
}

TEST(XMLTVParser, KeepsBlankTextsAsEmptyTexts) {
    const auto programs =
        parsed(xmltv(programme("<title> \n </title><desc> </desc><category>\t</category>")));
    ASSERT_THAT(programs, SizeIs(1));
    EXPECT_EQ(programs.front().title, "");
    EXPECT_EQ(programs.front().desc, "");
    EXPECT_EQ(programs.front().category, "");
}

TEST(XMLTVParser, LeavesMissingAndEmptyTextsAbsent) {
    const auto programs = parsed(xmltv(programme("<title>T</title><category></category>")));
    ASSERT_THAT(programs, SizeIs(1));
    EXPECT_EQ(programs.front().desc, std::nullopt);
    EXPECT_EQ(programs.front().category, std::nullopt);
}

TEST(XMLTVParser, JoinsTheRunsAroundEntities) {
    const auto programs = parsed(
        xmltv(programme("<title>Tom &amp; Jerry &#233; &#x20AC;&lt;</title><desc><![CDATA[a < b]]></desc>")));
    ASSERT_THAT(programs, SizeIs(1));
    EXPECT_EQ(programs.front().title, "Tom & Jerry é €<");
    EXPECT_EQ(programs.front().desc, "a < b");
}

TEST(XMLTVParser, JoinsSeveralElementsOfAKindWithNothingBetween) {
    const auto programs =
        parsed(xmltv(programme("<title lang=\"pt\">Jogo</title>\n<title lang=\"en\">Game</title>"
                               "<desc>um</desc> <desc>two</desc>"
                               "<category>Filme</category><category>Drama</category>")));
    ASSERT_THAT(programs, SizeIs(1));
    EXPECT_EQ(programs.front().title, "JogoGame");
    EXPECT_EQ(programs.front().desc, "umtwo");
    EXPECT_EQ(programs.front().category, "FilmeDrama");
}

TEST(XMLTVParser, DropsTextAfterANestedChild) {
    EXPECT_THAT(titlesOf(parsed(xmltv(programme("<title>before<b>inside</b>after</title>")))),
                ElementsAre("before"));
}

TEST(XMLTVParser, ClearsTheFieldsAtEachStart) {
    const auto programs =
        parsed(xmltv(programme("<title>A</title><desc>a</desc>") + programme("<title>B</title>", "c2") +
                     "<programme channel=\"c3\"><title>C</title></programme>"));
    ASSERT_THAT(titlesOf(programs), ElementsAre("A", "B"));
    EXPECT_EQ(programs.back().desc, std::nullopt);
    EXPECT_EQ(programs.back().channelId, "c2");
}

TEST(XMLTVParser, LetsAnInnerProgrammeResetTheFieldsOfTheOuterOne) {
    const std::string inner = programme("<title>inner</title>");
    // The outer end finds the fields of the inner programme.
    EXPECT_THAT(titlesOf(parsed(xmltv(programme("<title>outer</title>" + inner + "<title>late</title>")))),
                ElementsAre("inner", "inner"));
}

TEST(XMLTVParser, KnowsElementsByTheirExactNames) {
    EXPECT_THAT(parsed(xmltv("<Programme " + validTimes + "><title>T</title></Programme>" +
                             programme("<Title>T</Title>") + "<x:programme " + validTimes +
                             "><title>T</title></x:programme>" +
                             "<programme Start=\"20240115120000 +0000\" "
                             "stop=\"20240115130000 +0000\"><title>T</title></programme>")),
                IsEmpty());
}

TEST(XMLTVParser, IgnoresTextOutsideOfProgrammes) {
    const auto programs = parsed(
        xmltv("<title>lost</title>text" + programme("between<title>T</title>text") + "<desc>lost</desc>"));
    ASSERT_THAT(titlesOf(programs), ElementsAre("T"));
    EXPECT_EQ(programs.front().desc, std::nullopt);
}

TEST(XMLTVParser, FindsATitleAtAnyDepthOfItsProgramme) {
    EXPECT_THAT(titlesOf(parsed(xmltv(programme("<credits><title>deep</title></credits>")))),
                ElementsAre("deep"));
}

TEST(XMLTVParser, KeepsWhatCameBeforeASyntaxError) {
    const std::string good = programme("<title>A</title>") + programme("<title>B</title>");
    for (const std::string bad :
         {"<programme", "</wrong>", "<a b=c>", "&undeclared;", "<title>\xff</title>", "\x01"}) {
        EXPECT_THAT(titlesOf(parsed("<tv>" + good + bad + programme("<title>C</title>"))),
                    ElementsAre("A", "B"))
            << bad;
    }
    EXPECT_THAT(titlesOf(parsed("<tv>" + good)), ElementsAre("A", "B"));
    EXPECT_THAT(titlesOf(parsed(xmltv(good) + "<second/>")), ElementsAre("A", "B"));
}

TEST(XMLTVParser, FindsNothingInWhatIsNoXML) {
    for (const std::string text : {"", " ", "{\"error\":1}", "not xml", "\xff\xfe", "<"}) {
        EXPECT_THAT(parsed(text), IsEmpty());
    }
}

TEST(XMLTVParser, SaysWhenFurtherBytesChangeNothing) {
    XMLTVParser parser([](std::vector<EPGProgram>&&) {});
    parser.feed("<tv></wrong>" + std::string(100'000, ' '));
    EXPECT_TRUE(parser.isOver());
}

TEST(XMLTVParser, DoesNotDependOnHowTheDocumentIsSplit) {
    std::string body;
    for (int number = 0; number < 700; ++number) {
        body += programme("<title>Título &amp; " + std::to_string(number) + "</title><desc>" +
                          std::string(static_cast<std::size_t>(number), 'x') + "</desc>");
    }
    const std::string document = xmltv(body);
    ASSERT_GT(document.size(), 200'000U);
    const auto whole = parsed(document);
    ASSERT_THAT(whole, SizeIs(700));
    for (const std::size_t step : {1U, 7U, 4096U, 65536U, 65537U}) {
        auto split = parsed(document, step);
        ASSERT_THAT(split, SizeIs(700));
        for (std::size_t index = 0; index < split.size(); ++index) {
            split[index].id = whole[index].id;
        }
        EXPECT_EQ(split, whole) << step;
    }
}

TEST(XMLTVParser, ReadsOtherEncodings) {
    const std::string body = programme("<title>caf\xe9 \x80</title>");
    const auto titleIn = [&](const std::string& encoding) {
        return titlesOf(parsed("<?xml version=\"1.0\" encoding=\"" + encoding + "\"?><tv>" + body + "</tv>"));
    };
    EXPECT_THAT(titleIn("windows-1252"), ElementsAre("café €"));
    EXPECT_THAT(titleIn("ISO-8859-15"), ElementsAre("café \xc2\x80"));
    EXPECT_THAT(titleIn("windows-1251"), ElementsAre("cafй Ђ"));
    EXPECT_THAT(titleIn("no-such-encoding"), IsEmpty());
    EXPECT_THAT(titleIn("UTF-8"), IsEmpty());
    std::string utf16 = "\xff\xfe";
    for (const char character : "<tv>" + programme("<title>T</title>") + "</tv>") {
        utf16 += {character, '\0'};
    }
    EXPECT_THAT(titlesOf(parsed(utf16)), ElementsAre("T"));
}

TEST(XMLTVParser, HandsProgrammesOverInBatchesOfBoundedSize) {
    std::vector<std::size_t> batches;
    XMLTVParser parser([&](std::vector<EPGProgram>&& batch) { batches.push_back(batch.size()); });
    std::string body;
    for (int number = 0; number < 1100; ++number) {
        body += programme("<title>T</title>");
    }
    parser.feed(xmltv(body));
    parser.finish();
    EXPECT_THAT(batches, ElementsAre(512, 512, 76));
}

TEST(XMLTVParser, RaisesWhatTheReceiverOfProgrammesThrows) {
    XMLTVParser parser([](std::vector<EPGProgram>&&) { throw std::runtime_error("full"); });
    parser.feed(xmltv(programme("<title>T</title>")));
    EXPECT_THROW(parser.finish(), std::runtime_error);
}

} // namespace
} // namespace ondavia::testing
