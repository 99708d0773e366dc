#include "CommandLine.h"

#include "personal/HistoryRecording.h"
#include "store/LibraryStore.h"

#include <SQLiteCpp/Database.h>

namespace ondavia::cli::testing {
namespace {

/// A program whose store remembers a film seen to its end, an episode and another film, in this order.
class HistoryCommands : public ::testing::Test {
protected:
    HistoryCommands() {
        record("main_1", "movie", "O Farol", 2000);
        record("main_series_7_ep_12", "series", "Maré Baixa - Ep. 3", 500);
        record("main_2", "movie", "a\x1b]0;b\x07", 30.5);
    }

    void record(const char* id, const char* type, const char* name, double position) {
        const auto store = LibraryStore::open(cli.folder() / "store");
        Channel item;
        item.id = id;
        item.type = type;
        item.name = name;
        saveHistoryItem(store->mainContext(), WatchedItem(item), position, 2000);
    }
    std::vector<QJsonObject> listed() {
        const auto result = cli.run(words("history --json"));
        EXPECT_EQ(result.status, 0) << result.errors;
        return objectsOf(result.output);
    }
    std::vector<std::string> ids() { return textsOf(listed(), "channelId"); }

    CommandLine cli;
};

TEST_F(HistoryCommands, ListWhatWasWatchedTheLatestFirst) {
    EXPECT_EQ(ids(), (std::vector<std::string>{"main_2", "main_series_7_ep_12", "main_1"}));
    const auto rows = listed();
    EXPECT_EQ(rows.at(0)[QStringLiteral("position")].toDouble(), 30.5);
    EXPECT_EQ(rows.at(0)[QStringLiteral("duration")].toDouble(), 2000);
    EXPECT_EQ(rows.at(0)[QStringLiteral("title")].toString(), QStringLiteral("a\x1b]0;b\x07"));
    EXPECT_EQ(rows.at(1)[QStringLiteral("type")].toString(), QStringLiteral("series"));
    EXPECT_EQ(rows.at(1)[QStringLiteral("progress")].toDouble(), 25);
    EXPECT_EQ(rows.at(1)[QStringLiteral("isComplete")], QJsonValue(false));
    EXPECT_EQ(rows.at(2)[QStringLiteral("isComplete")], QJsonValue(true));
    EXPECT_TRUE(rows.at(2)[QStringLiteral("lastWatchedAt")].toString().endsWith(QLatin1Char('Z')));
}

TEST_F(HistoryCommands, AListForPeopleHasALineForEachAndSteersNoTerminal) {
    const auto result = cli.run(words("history"));
    const auto lines = linesOf(result.output);
    ASSERT_EQ(lines.size(), 3U) << result.output;
    EXPECT_TRUE(lines.at(0).ends_with(R"(a\x1b]0;b\x07)")) << lines.at(0);
    EXPECT_TRUE(lines.at(1).starts_with("main_series_7_ep_12 ")) << lines.at(1);
    EXPECT_TRUE(lines.at(1).ends_with("25.0   no   Maré Baixa - Ep. 3")) << lines.at(1);
}

TEST_F(HistoryCommands, RemoveForgetsOneItemAndSaysWhenThereIsNone) {
    EXPECT_EQ(cli.run(words("history remove main_1")).status, 0);
    EXPECT_EQ(ids(), (std::vector<std::string>{"main_2", "main_series_7_ep_12"}));
    const auto again = cli.run(words("history remove main_1"));
    EXPECT_EQ(again.status, 1);
    EXPECT_TRUE(holds(again.errors, "error: the history has no item with the id main_1")) << again.errors;
}

TEST_F(HistoryCommands, ClearForgetsOneType) {
    EXPECT_EQ(cli.run(words("history clear movies")).status, 0);
    EXPECT_EQ(ids(), std::vector<std::string>{"main_series_7_ep_12"});
    EXPECT_EQ(cli.run(words("history clear series")).status, 0);
    EXPECT_EQ(cli.run(words("history clear series")).status, 0) << "nothing to do";
    EXPECT_TRUE(listed().empty());
}

TEST_F(HistoryCommands, WhatCannotBeDeletedIsAFailure) {
    SQLite::Database(cli.folder() / "store" / "user.db", SQLite::OPEN_READWRITE)
        .exec("CREATE TRIGGER refuse BEFORE DELETE ON watch_history BEGIN SELECT RAISE(ABORT, 'no'); END");
    for (const char* line : {"history remove main_1", "history clear movies"}) {
        const auto result = cli.run(words(line));
        EXPECT_EQ(result.status, 1) << line;
        EXPECT_TRUE(holds(result.errors, "error: the history cannot be written")) << result.errors;
    }
    EXPECT_EQ(ids().size(), 3U);
}

} // namespace
} // namespace ondavia::cli::testing
