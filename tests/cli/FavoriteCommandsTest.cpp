#include "CommandLine.h"

#include "personal/FavoritesService.h"
#include "store/LibraryStore.h"

#include <SQLiteCpp/Database.h>

namespace ondavia::cli::testing {
namespace {

/// A program whose catalogue has three items and whose user has marked nothing.
class FavoriteCommands : public ::testing::Test {
protected:
    FavoriteCommands() {
        store("main_1", "live", "Canal 1");
        store("main_2", "movie", "O Farol");
        store("main_series_7", "series", "a\x1b]0;b\x07");
    }

    void store(const char* id, const char* type, const char* name) {
        const auto opened = LibraryStore::open(cli.folder() / "store");
        Channel item;
        item.id = id;
        item.type = type;
        item.name = name;
        item.groupTitle = "Grupo";
        opened->mainContext().insert(item);
        opened->mainContext().save();
    }
    bool isMarked(const char* id) {
        const auto opened = LibraryStore::open(cli.folder() / "store");
        return FavoritesService(opened->mainContext(), mainProfileId).isFavorite(id);
    }
    /// What `favorites toggle` says that the item is now.
    std::string toggled(const char* id) {
        const auto result = cli.run(words("favorites toggle --json") << QString::fromUtf8(id));
        EXPECT_EQ(result.status, 0) << result.errors;
        const auto objects = objectsOf(result.output);
        EXPECT_EQ(textsOf(objects, "id"), std::vector<std::string>{id});
        return objects.at(0)[QStringLiteral("isFavorite")].toBool() ? "a favourite" : "none";
    }
    std::vector<QJsonObject> listed() {
        const auto result = cli.run(words("favorites --json"));
        EXPECT_EQ(result.status, 0) << result.errors;
        return objectsOf(result.output);
    }
    std::vector<std::string> ids() { return textsOf(listed(), "id"); }

    CommandLine cli;
};

TEST_F(FavoriteCommands, ToggleMarksAnItemAndTakesTheMarkAway) {
    EXPECT_TRUE(ids().empty());
    EXPECT_EQ(toggled("main_2"), "a favourite");
    EXPECT_TRUE(isMarked("main_2"));
    EXPECT_EQ(toggled("main_2"), "none");
    EXPECT_FALSE(isMarked("main_2"));
}

TEST_F(FavoriteCommands, ListTheLatestFirstAsItemsAreListed) {
    for (const char* id : {"main_1", "main_2", "main_series_7"}) {
        toggled(id);
    }
    EXPECT_EQ(ids(), (std::vector<std::string>{"main_series_7", "main_2", "main_1"}));
    const auto rows = listed();
    const auto shown = objectsOf(cli.run(words("list movies --json")).output);
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_EQ(rows.at(1), shown[0]) << "all that is known of it";
    const auto lines = linesOf(cli.run(words("favorites")).output);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_TRUE(lines[0].ends_with(R"(a\x1b]0;b\x07)")) << lines[0];
    EXPECT_TRUE(lines[2].starts_with("main_1 ")) << lines[2];
}

TEST_F(FavoriteCommands, AToggleSaysSoInWords) {
    const auto result = cli.run(words("favorites toggle main_1"));
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_TRUE(holds(result.output, "isFavorite")) << result.output;
    EXPECT_TRUE(holds(result.output, "yes")) << result.output;
}

TEST_F(FavoriteCommands, OnlyWhatIsInTheCatalogueCanBeMarkedAndWhatHasLeftItUnmarked) {
    const auto unknown = cli.run(words("favorites toggle main_99"));
    EXPECT_EQ(unknown.status, 1);
    EXPECT_TRUE(holds(unknown.errors, "error: the catalogue has no item with the id main_99"))
        << unknown.errors;
    EXPECT_FALSE(isMarked("main_99"));
    toggled("main_1");
    {
        const auto opened = LibraryStore::open(cli.folder() / "store");
        opened->mainContext().removeAll<Channel>();
        opened->mainContext().save();
    }
    EXPECT_TRUE(ids().empty());
    EXPECT_TRUE(isMarked("main_1"));
    EXPECT_EQ(toggled("main_1"), "none");
}

TEST_F(FavoriteCommands, WhatCannotBeWrittenIsAFailure) {
    toggled("main_1");
    SQLite::Database(cli.folder() / "store" / "user.db", SQLite::OPEN_READWRITE)
        .exec("CREATE TRIGGER keep BEFORE DELETE ON favorite BEGIN SELECT RAISE(ABORT, 'no'); END;"
              "CREATE TRIGGER refuse BEFORE INSERT ON favorite BEGIN SELECT RAISE(ABORT, 'no'); END");
    for (const char* line : {"favorites toggle main_1", "favorites toggle main_2"}) {
        const auto result = cli.run(words(line));
        EXPECT_EQ(result.status, 1) << line;
        EXPECT_EQ(result.output, "") << line;
        EXPECT_TRUE(holds(result.errors, "error: the favourites cannot be written")) << result.errors;
    }
    EXPECT_EQ(ids(), std::vector<std::string>{"main_1"});
}

} // namespace
} // namespace ondavia::cli::testing
