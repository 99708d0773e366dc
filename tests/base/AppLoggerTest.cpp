#include "base/AppLogger.h"
#include "base/LocalizedText.h"
#include "base/Redaction.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace ondavia {
namespace {

TEST(AppLogger, putsArgumentsInTheirPlaces) {
    const testing::LogCapture log;
    AppLogger::keychain.error("SecItemAdd failed for key=%s with OSStatus: %d", {"ondavia_server", -25299});
    AppLogger::subtitle.debug("VOD %ld: fetch error code=%{public}ld domain=%{public}s",
                              {17, std::int64_t{-1009}, "domain"});
    ASSERT_EQ(log.records().size(), 2U);
    EXPECT_EQ(log.records()[0].message, "SecItemAdd failed for key=ondavia_server with OSStatus: -25299");
    EXPECT_EQ(log.records()[0].category, LogCategory::keychain);
    EXPECT_EQ(log.records()[0].level, LogLevel::Error);
    EXPECT_EQ(log.records()[1].message, "VOD 17: fetch error code=-1009 domain=domain");
    EXPECT_EQ(log.records()[1].level, LogLevel::Debug);
}

TEST(AppLogger, masksPrivateTextsAndPrintsPublicOnesAsTheyStand) {
    const testing::LogCapture log;
    AppLogger::network.error("%s | %{public}s", {"http://h/live/u/p/1.ts", "http://h/docs"});
    EXPECT_EQ(log.records().at(0).message, "http://h/<redacted> | http://h/docs");
}

TEST(AppLogger, keepsOneCallOnOneLine) {
    const testing::LogCapture log;
    AppLogger::general.error("a %s", {"first\nsecond\r\nthird"});
    EXPECT_EQ(log.records().at(0).message, R"(a first\nsecond\r\nthird)");
}

TEST(AppLogger, printsNothingThatSteersATerminal) {
    ::testing::internal::CaptureStderr();
    AppLogger::general.error("%s %{public}s", {"\x1b]0;a\x07", "\xc2\x9b"
                                                               "31m\x7f\xe2\x80\xae\xff\n"});
    const std::string line = ::testing::internal::GetCapturedStderr();
    EXPECT_TRUE(line.ends_with(" general error: \\x1b]0;a\\x07 \\u009b31m\\x7f\\u202e\\xff\\n\n")) << line;
}

TEST(AppLogger, survivesAFormatThatAsksForMoreThanItGets) {
    const testing::LogCapture log;
    AppLogger::general.error("%s %ld %");
    EXPECT_EQ(log.records().at(0).message, "  ");
}

TEST(AppLoggerDeathTest, stillMasksAtTheVeryEndOfTheProcess) {
    ::testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const auto endWhileLogging = [] {
        // Before the first secret: what is made after this is destroyed before it runs.
        std::atexit([] { AppLogger::general.error("the word is %s.", {"geheim-4711"}); });
        registerSecret("geheim-4711");
        std::exit(0);
    };
    EXPECT_EXIT(endWhileLogging(), ::testing::ExitedWithCode(0), "the word is <redacted>\\.");
}

TEST(LocalizedTextDeathTest, isThereAtTheVeryEndOfTheProcess) {
    ::testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const auto endWhileReading = [] {
        // Before the first catalogue, as above.
        std::atexit([] { AppLogger::general.error("%s", {localizedText("end", "none")}); });
        installTextCatalogue({{"end", "the words are there"}});
        std::exit(0);
    };
    EXPECT_EXIT(endWhileReading(), ::testing::ExitedWithCode(0), "the words are there");
}

TEST(AppLogger, namesItsFiveCategories) {
    EXPECT_EQ(logCategoryName(LogCategory::player), "player");
    EXPECT_EQ(logCategoryName(LogCategory::network), "network");
    EXPECT_EQ(logCategoryName(LogCategory::subtitle), "subtitle");
    EXPECT_EQ(logCategoryName(LogCategory::keychain), "keychain");
    EXPECT_EQ(logCategoryName(LogCategory::general), "general");
}

} // namespace
} // namespace ondavia
