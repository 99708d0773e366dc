#include "base/VisibleText.h"

#include <gtest/gtest.h>

namespace ondavia {
namespace {

TEST(VisibleText, leavesPlainTextOfAnyLanguageAlone) {
    for (const char* text : {"", "a b", "ção — 日本 🎬", R"(\x1b \n)", "العربية"}) {
        EXPECT_EQ(visibleText(text), text);
    }
}

TEST(VisibleText, writesControlCharactersOut) {
    EXPECT_EQ(visibleText("\x1b[31m"), R"(\x1b[31m)");
    EXPECT_EQ(visibleText("a\r\n\tb\x7f"), R"(a\r\n\tb\x7f)");
    EXPECT_EQ(visibleText("\u009b31m\u0085"), R"(\u009b31m\u0085)");
    EXPECT_EQ(visibleText(std::string("a\0b", 3)), R"(a\x00b)");
}

TEST(VisibleText, writesOutWhatTurnsTheDirectionOrEndsALine) {
    EXPECT_EQ(
        visibleText("\u061c\u200e\u200f\u202a\u202b\u202c\u202d\u202e\u2066\u2067\u2068\u2069\u2028\u2029"),
        R"(\u061c\u200e\u200f\u202a\u202b\u202c\u202d\u202e\u2066\u2067\u2068\u2069\u2028\u2029)");
}

TEST(VisibleText, writesOutBytesThatAreNoText) {
    EXPECT_EQ(visibleText("\x9b"
                          "31m \xc3("),
              R"(\x9b31m \xc3()");
    EXPECT_EQ(visibleText("\xc3\xa7\xe2\x80"), "\xc3\xa7\\xe2\\x80");
    EXPECT_EQ(visibleText("\xed\xa0\x80"), R"(\xed\xa0\x80)");
}

TEST(VisibleText, changesNothingTwice) {
    const std::string once = visibleText("\x1b\u202e\xff\n");
    EXPECT_EQ(visibleText(once), once);
}

TEST(VisibleJson, writesThemAsJsonDoes) {
    EXPECT_EQ(visibleJson("{\"a\":\"\x7f\u009b\u202e\"}"), R"({"a":"\u007f\u009b\u202e"})");
}

} // namespace
} // namespace ondavia
