#include "GuideSamples.h"
#include "guide/Base64.h"
#include "guide/BodyInflater.h"
#include "guide/CalendarDay.h"
#include "guide/ShortGuide.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <random>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

// --- dates of documents

TEST(XMLTVDates, ReadTheCommonFormByItsOffset) {
    XMLTVDateFormatter dates;
    EXPECT_EQ(dates.date("20240115120000 +0000"), utc(2024, 1, 15, 12));
    EXPECT_EQ(dates.date("20240115120000 +0530"), utc(2024, 1, 15, 6, 30));
    EXPECT_EQ(dates.date("20240229235959 -0100"), utc(2024, 3, 1, 0, 59, 59));
    EXPECT_EQ(dates.date("20240331013000 +0000"), utc(2024, 3, 31, 1, 30)); // a gap in the local zone
}

TEST(XMLTVDates, RefuseWhatDoesNotFit) {
    XMLTVDateFormatter dates;
    for (const char* text :
         {"", " ", "20240115120000", "20240115120000 ", "20240115120000+0000 ", "20240115120000 +0000 ",
          "20230229120000 +0000", "20241315120000 +0000", "20240115240000 +0000", "20240115126000 +0000",
          "20240115120060 +0000", "20240115120000 +2400", "20240115120000 +0060", "2024-01-15 12:00:00 +0000",
          "text", "2024011512000x +0000"}) {
        EXPECT_EQ(dates.date(text), std::nullopt) << text;
    }
}

TEST(XMLTVDates, ReadOtherOffsetsAsICUDoes) {
    XMLTVDateFormatter dates;
    for (const char* text : {"20240115120000 Z", "20240115120000 GMT", "20240115120000 +00:00"}) {
        EXPECT_EQ(dates.date(text), utc(2024, 1, 15, 12)) << text;
    }
}

TEST(XMLTVDates, AnswerTheSameWhenAnUncommonTextComesAgain) {
    XMLTVDateFormatter dates;
    for (int round = 0; round < 3'000; ++round) {
        ASSERT_EQ(dates.date(round % 2 == 0 ? "20240115120000 Z" : "20240115120000").has_value(),
                  round % 2 == 0);
    }
}

TEST(XMLTVDates, GoOnPastTheBoundOfTheirMemory) {
    XMLTVDateFormatter dates;
    for (int number = 0; number < 17'000; ++number) {
        ASSERT_EQ(dates.date(std::to_string(number)), std::nullopt);
    }
    EXPECT_EQ(dates.date("20240115120000 Z"), utc(2024, 1, 15, 12));
    EXPECT_EQ(dates.date(std::string(1000, ' ') + "20240115120000"), std::nullopt);
}

/// Texts around the common form: right ones, and ones wrong in a field or two.
class DateTexts final {
public:
    std::string next() {
        std::string text = digits(year(), 4) + digits(field(12), 2) + digits(field(31), 2) +
                           digits(field(23), 2) + digits(field(59), 2) + digits(field(59), 2) + ' ' +
                           (pick(2) == 0 ? '+' : '-') + digits(field(14), 2) + digits(field(59), 2);
        if (pick(3) == 0) {
            mutate(text);
        }
        return text;
    }

private:
    unsigned pick(unsigned count) { return std::uniform_int_distribution<unsigned>(0, count - 1)(m_random); }
    unsigned year() {
        static constexpr std::array<unsigned, 12> edges{0,    1,    4,    1000, 1581, 1582,
                                                        1583, 1900, 2000, 2023, 2024, 9999};
        return pick(2) == 0 ? edges.at(pick(edges.size())) : pick(10'000);
    }
    /// Mostly 0 to `largest`, sometimes beyond.
    unsigned field(unsigned largest) { return pick(12) == 0 ? pick(100) : pick(largest + 1); }
    static std::string digits(unsigned number, std::size_t width) {
        std::string text = std::to_string(number);
        return std::string(width - text.size(), '0') + text;
    }
    void mutate(std::string& text) {
        static const std::vector<std::string> offsets{
            "Z",     "z",      "GMT",   "GMT+1", "GMT+01:00",  "UTC",
            "WEST",  "+01:00", "+1",    "+01",   "+100",       "+2400",
            "+0060", "-0000",  "+9999", "0100",  "\u22120100", "+\u0661\u0662\u0663\u0664"};
        static const std::vector<std::string> inserts{" ",      "\t",     "x",  "0",  "-",          ":",
                                                      "\u0661", "\u00a0", "\n", ".5", "\U0001D7D9", "\xff"};
        switch (pick(4)) {
        case 0:
            text = text.substr(0, 15) + offsets.at(pick(static_cast<unsigned>(offsets.size())));
            break;
        case 1:
            text.insert(pick(static_cast<unsigned>(text.size() + 1)),
                        inserts.at(pick(static_cast<unsigned>(inserts.size()))));
            break;
        case 2:
            text.erase(pick(static_cast<unsigned>(text.size())), 1 + pick(3));
            break;
        default:
            text += inserts.at(pick(static_cast<unsigned>(inserts.size())));
        }
    }

    std::mt19937 m_random{20'240'115};
};

TEST(XMLTVDates, AreTheSameWithAndWithoutTheFastPath) {
    XMLTVDateFormatter dates;
    DateTexts texts;
    int fast = 0;
    int slow = 0;
    int refused = 0;
    for (int round = 0; round < 15'000; ++round) {
        const std::string text = texts.next();
        const auto common = XMLTVDateFormatter::commonForm(text);
        const auto byPattern = dates.byPattern(text);
        ASSERT_EQ(dates.date(text), byPattern) << text;
        fast += common ? 1 : 0;
        slow += !common && byPattern ? 1 : 0;
        refused += byPattern ? 0 : 1;
    }
    EXPECT_GT(fast, 2000);
    EXPECT_GT(slow, 200);
    EXPECT_GT(refused, 2000);
}

TEST(XMLTVDates, TakeTheFastPathForEveryDayOfTheCalendar) {
    XMLTVDateFormatter dates;
    for (Date day = utc(1583, 1, 1); day < utc(2200, 1, 1); day += std::chrono::days(17)) {
        const std::chrono::year_month_day date(std::chrono::floor<std::chrono::days>(day));
        std::array<char, 32> text{};
        std::snprintf(text.data(), text.size(), "%04d%02u%02u235959 -0000", int{date.year()},
                      unsigned{date.month()}, unsigned{date.day()});
        const auto common = XMLTVDateFormatter::commonForm(text.data());
        ASSERT_TRUE(common) << text.data();
        ASSERT_EQ(common, dates.byPattern(text.data())) << text.data();
    }
}

// --- days

TEST(CalendarDay, IsOneDayOfTheLocalZone) {
    const CalendarDay winter = calendarDayOf(utc(2024, 1, 15, 13, 14));
    EXPECT_EQ(winter.begin, utc(2024, 1, 15));
    EXPECT_EQ(winter.end, utc(2024, 1, 16));
    const CalendarDay summer = calendarDayOf(utc(2024, 7, 15, 23, 30));
    EXPECT_EQ(summer.begin, utc(2024, 7, 15, 23));
    EXPECT_EQ(summer.end, utc(2024, 7, 16, 23));
}

TEST(CalendarDay, HasTwentyThreeOrTwentyFiveHoursWhereTheClockChanges) {
    for (const Date moment : {utc(2024, 3, 31), utc(2024, 3, 31, 0, 59, 59), utc(2024, 3, 31, 22, 59, 59)}) {
        EXPECT_EQ(calendarDayOf(moment).begin, utc(2024, 3, 31));
        EXPECT_EQ(calendarDayOf(moment).end, utc(2024, 3, 31, 23));
    }
    for (const Date moment :
         {utc(2024, 10, 26, 23), utc(2024, 10, 27, 1, 30), utc(2024, 10, 27, 23, 59, 59)}) {
        EXPECT_EQ(calendarDayOf(moment).begin, utc(2024, 10, 26, 23));
        EXPECT_EQ(calendarDayOf(moment).end, utc(2024, 10, 28));
    }
}

TEST(CalendarDay, HoldsTheMicrosecondsAtItsEdges) {
    const auto tick = std::chrono::microseconds(1);
    EXPECT_EQ(calendarDayOf(utc(2024, 1, 15) - tick).end, utc(2024, 1, 15));
    EXPECT_EQ(calendarDayOf(utc(1969, 12, 31) + tick).end, calendarDayOf(utc(1969, 12, 31, 12)).end);
}

// --- Base64

TEST(Base64, DecodesEveryLength) {
    EXPECT_EQ(decodeBase64(""), "");
    EXPECT_EQ(decodeBase64("Zg=="), "f");
    EXPECT_EQ(decodeBase64("Zm8="), "fo");
    EXPECT_EQ(decodeBase64("Zm9v"), "foo");
    EXPECT_EQ(decodeBase64("Zm9vYmFy"), "foobar");
    EXPECT_EQ(decodeBase64("+/+/"), "\xfb\xff\xbf");
    EXPECT_EQ(decodeBase64("AAAA"), std::string(3, '\0'));
}

TEST(Base64, RefusesEverythingElse) {
    for (const char* text : {"Z", "Zg", "Zg=", "Zm8", "====", "Z===", "=Zg=", "Zg==Zg==", "Zm9v\n", "Zm 9",
                             "Zm9-", "Zm9_", " Zm9v", "Zm9vYg==\n", "Zm9é"}) {
        EXPECT_EQ(decodeBase64(text), std::nullopt) << text;
    }
}

// --- compressed bodies

std::string inflated(std::string_view body, std::size_t step) {
    std::string out;
    BodyInflater inflater([&out](std::string_view bytes) { out += bytes; });
    for (std::size_t at = 0; at < body.size(); at += step) {
        inflater.feed(body.substr(at, step));
    }
    inflater.finish();
    return out;
}

TEST(BodyInflater, PassesOtherBodiesOnAsTheyAre) {
    for (const std::string body : {"", "<", "\x1f", "\x1fx", "<tv/>"}) {
        EXPECT_EQ(inflated(body, 1), body);
        EXPECT_EQ(inflated(body, 100), body);
    }
}

TEST(BodyInflater, InflatesAnyNumberOfMembers) {
    const std::string text(1'000'000, 'a');
    const std::string body = gzipped(text) + gzipped("") + gzipped("end");
    for (const std::size_t step : {1U, 3U, 1000U, 10'000'000U}) {
        EXPECT_EQ(inflated(body, step), text + "end") << step;
    }
}

TEST(BodyInflater, EndsWhereTheFileBreaks) {
    const std::string first = gzipped("first");
    std::string broken = gzipped("second");
    broken[broken.size() / 2] = static_cast<char>(broken[broken.size() / 2] ^ 0x55);
    EXPECT_TRUE(inflated(first + broken + gzipped("third"), 1).starts_with("first"));
    EXPECT_EQ(inflated(first + broken + gzipped("third"), 1).find("third"), std::string::npos);
    EXPECT_EQ(inflated(first + "no gzip", 100), "first");
    EXPECT_EQ(inflated(first.substr(0, 12), 1).find("first"), std::string::npos);
}

TEST(BodyInflater, EndsABombAtItsBound) {
    const std::string member = gzipped(std::string(std::size_t{64} << 20, ' '));
    std::uint64_t size = 0;
    BodyInflater inflater([&size](std::string_view bytes) { size += bytes.size(); });
    for (int round = 0; round < 100 && !inflater.isOver(); ++round) {
        inflater.feed(member);
    }
    EXPECT_TRUE(inflater.isOver());
    EXPECT_EQ(size, BodyInflater::maximumInflatedBytes);
}

// --- short guides

XtreamEPGListing listing(std::optional<std::string> title,
                         std::optional<std::string> start = "2024-01-15 12:00:00",
                         std::optional<std::string> end = "2024-01-15 13:00:00") {
    XtreamEPGListing row;
    row.id = "99";
    row.channelId = "another";
    row.title = std::move(title);
    row.start = std::move(start);
    row.end = std::move(end);
    return row;
}

std::vector<EPGProgram> programsOf(const std::vector<XtreamEPGListing>& listings) {
    return programsFromListings(listings, "tvi.pt");
}

TEST(ShortGuide, MakesAProgrammeOfAListing) {
    auto row = listing("VMOtdHVsbw==", "2024-07-15 12:00:00", "2024-07-15 12:30:00");
    row.description = "RGVzY3Jp5+Nv"; // not UTF-8
    auto programs = programsOf({row});
    ASSERT_THAT(programs, SizeIs(1));
    EXPECT_EQ(programs.front(),
              (EPGProgram{"tvi.pt_2024-07-15 12:00:00", "tvi.pt", "T\u00edtulo", std::nullopt,
                          utc(2024, 7, 15, 11), utc(2024, 7, 15, 11, 30), std::nullopt}));
    row.description = "U2ltcGxlcw==";
    EXPECT_EQ(programsOf({row}).front().desc, "Simples");
    row.description = "not base 64";
    EXPECT_EQ(programsOf({row}).front().desc, "not base 64");
    row.description = "";
    EXPECT_EQ(programsOf({row}).front().desc, "");
}

TEST(ShortGuide, DecodesPlainTextThatHappensToBeBase64) {
    EXPECT_THAT(titlesOf(programsOf({listing("Zorro123")})), IsEmpty()); // its bytes are no UTF-8
    EXPECT_THAT(titlesOf(programsOf({listing("aGll")})), ElementsAre("hie"));
    EXPECT_THAT(titlesOf(programsOf({listing("Telejornal da noite")})), ElementsAre("Telejornal da noite"));
}

TEST(ShortGuide, SkipsUnusableListingsAlone) {
    EXPECT_THAT(titlesOf(programsOf(
                    {listing(std::nullopt), listing(""), listing("/////w=="), listing("A", std::nullopt),
                     listing("B", "2024-01-15 14:00:00", std::nullopt), listing("C", "2024-01-15 14:00"),
                     listing("D", "2024-01-15 14:00:00", "x"), listing("E", "2024-02-30 14:00:00"),
                     listing("F", "2024-01-15 14:00:00 "), listing("Bom dia", "2024-01-15 15:00:00")})),
                ElementsAre("Bom dia"));
}

TEST(ShortGuide, SkipsATimeThatTheLocalClockNeverShows) {
    EXPECT_THAT(programsOf({listing("Jogo de hoje", "2024-03-31 01:30:00", "2024-03-31 03:00:00")}),
                IsEmpty());
}

TEST(ShortGuide, KeepsTheFirstOfListingsWithOneStart) {
    EXPECT_THAT(titlesOf(programsOf({listing("um dois"), listing("dois tres")})), ElementsAre("um dois"));
}

} // namespace
} // namespace ondavia::testing
