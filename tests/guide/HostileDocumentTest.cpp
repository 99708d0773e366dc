#include "GuideSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

const std::string before = programme("<title>before</title>");
const std::string after = programme("<title>after</title>");

std::string repeated(std::string_view text, std::size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t index = 0; index < count; ++index) {
        all += text;
    }
    return all;
}

/// The largest number of bytes of programmes that the parser held at once.
std::size_t largestBatch(const std::string& document) {
    std::size_t largest = 0;
    XMLTVParser parser([&](std::vector<EPGProgram>&& batch) {
        std::size_t bytes = 0;
        for (const EPGProgram& program : batch) {
            bytes += program.title.size() + program.desc.value_or("").size();
        }
        largest = std::max(largest, bytes);
    });
    parser.feed(document);
    parser.finish();
    return largest;
}

TEST(HostileDocument, OfManyLaughsEndsThere) {
    std::string entities = "<!ENTITY e0 \"haha\">";
    for (int level = 1; level <= 20; ++level) {
        entities += "<!ENTITY e" + std::to_string(level) + " \"" +
                    repeated("&e" + std::to_string(level - 1) + ";", 10) + "\">";
    }
    const std::string document =
        "<!DOCTYPE tv [" + entities + "]><tv>" + before + programme("<title>&e20;</title>") + after + "</tv>";
    EXPECT_THAT(titlesOf(parsed(document)), ElementsAre("before"));
}

TEST(HostileDocument, OfTooManyLaughsOutsideOfTextsEndsThere) {
    const std::string big(100'000, 'x');
    const std::string document = "<!DOCTYPE tv [<!ENTITY e \"" + big + "\">]><tv>" + before + "<icon>" +
                                 repeated("&e;", 500'000) + "</icon>" + after + "</tv>";
    EXPECT_THAT(titlesOf(parsed(document)), ElementsAre("before"));
}

TEST(HostileDocument, MultiplyingProgrammesByEntitiesStaysInBoundedBatches) {
    const std::string row = programme("<title>" + std::string(3000, 't') + "</title>");
    std::string escaped;
    for (const char character : row) {
        escaped += character == '"' ? "'" : std::string(1, character);
    }
    const std::string document =
        "<!DOCTYPE tv [<!ENTITY p \"" + repeated(escaped, 20) + "\">]><tv>" + repeated("&p;", 120) + "</tv>";
    EXPECT_THAT(parsed(document), SizeIs(2400));
    EXPECT_LT(largestBatch(document), std::size_t{3} << 20);
}

TEST(HostileDocument, DeclaringTooManyEntitiesEndsThere) {
    std::string chain = "<!ENTITY e0 \"x\">";
    for (int level = 1; level < 100'000; ++level) {
        chain += "<!ENTITY e" + std::to_string(level) + " \"&e" + std::to_string(level - 1) + ";\">";
    }
    EXPECT_THAT(parsed("<!DOCTYPE tv [" + chain + "]><tv>" + before + "&e99999;</tv>"), IsEmpty());
}

TEST(HostileDocument, NeverHasExternalEntitiesLoaded) {
    const auto file = std::filesystem::temp_directory_path() / "ondavia-external-entity.txt";
    std::ofstream(file) << "secret";
    const std::string document = "<!DOCTYPE tv SYSTEM \"file://" + file.string() +
                                 "\" [<!ENTITY ext SYSTEM \"file://" + file.string() + "\">]><tv>" +
                                 programme("<title>a&ext;b&nbsp;c</title>") + "</tv>";
    EXPECT_THAT(titlesOf(parsed(document)), ElementsAre("abc"));
    std::filesystem::remove(file);
}

TEST(HostileDocument, WithAnEndlessTagEndsThere) {
    const std::string document =
        "<tv>" + before + "<icon src=\"" + std::string(20U << 20U, 'x') + "\"/>" + after + "</tv>";
    EXPECT_THAT(titlesOf(parsed(document)), ElementsAre("before"));
}

TEST(HostileDocument, WithALongTagIsReadOn) {
    const std::string document =
        "<tv>" + before + "<icon src=\"" + std::string(1U << 20U, 'x') + "\"/>" + after + "</tv>";
    EXPECT_THAT(titlesOf(parsed(document)), ElementsAre("before", "after"));
}

TEST(HostileDocument, WithEndlessNestingEndsThere) {
    EXPECT_THAT(titlesOf(parsed("<tv>" + before + repeated("<a>", 2'000'000) + repeated("</a>", 2'000'000) +
                                after + "</tv>")),
                ElementsAre("before"));
}

TEST(HostileDocument, WithEverNewNamesEndsThere) {
    std::string names;
    for (int number = 0; number < 400'000; ++number) {
        names += "<e" + std::to_string(number) + " a" + std::to_string(number) + "=\"\"/>";
    }
    EXPECT_THAT(titlesOf(parsed("<tv>" + before + names + after + "</tv>")), ElementsAre("before"));
}

TEST(HostileDocument, WithAnEndlessTitleEndsThere) {
    const std::string longest(XMLTVParser::maximumText, 't');
    EXPECT_THAT(parsed("<tv>" + programme("<title>" + longest + "</title>") + after + "</tv>"), SizeIs(2));
    EXPECT_THAT(
        titlesOf(parsed("<tv>" + before + programme("<title>" + longest + "t</title>") + after + "</tv>")),
        ElementsAre("before"));
}

} // namespace
} // namespace ondavia::testing
