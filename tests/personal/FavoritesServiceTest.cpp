#include "personal/FavoritesService.h"

#include "store/StoreSamples.h"

#include <gmock/gmock.h>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FavoritesServiceTest : public ::testing::Test {
protected:
    FavoritesServiceTest() { insertAndSave(m_context, makeChannels(1, 3)); }

    static Favorite mark(const std::string& channelId, int minutesAgo, const std::string& profile = "main") {
        Favorite favorite(profile, channelId);
        favorite.addedAt = sampleDate - std::chrono::minutes(minutesAgo);
        return favorite;
    }
    void insert(const std::vector<Favorite>& rows) { insertAndSave(m_context, rows); }
    /// As a synchronisation does.
    void replaceCatalogue(const std::vector<Channel>& channels) { replaceAll(*m_store, channels); }

    void onUserFile(const std::string& sql) { executeRaw(m_folder.path() / "user.db", sql); }
    void refuse(const std::string& change) {
        onUserFile("CREATE TRIGGER refuse BEFORE " + change +
                   " ON favorite BEGIN SELECT RAISE(ABORT, 'no'); END");
    }
    void allowChanges() { onUserFile("DROP TRIGGER refuse"); }

    std::vector<std::string> stored() { return m_context.distinct(&Favorite::channelId); }
    std::vector<std::string> marked() {
        std::vector<std::string> ids;
        for (const Favorite& favorite : m_service.getAllFavorites()) {
            ids.push_back(favorite.channelId);
        }
        return ids;
    }
    std::vector<std::string> listed() {
        std::vector<std::string> ids;
        for (const Channel& channel : m_service.getFavoriteChannels()) {
            ids.push_back(channel.id);
        }
        return ids;
    }

    TemporaryFolder m_folder;
    std::unique_ptr<LibraryStore> m_store = LibraryStore::open(m_folder.path());
    StoreContext& m_context = m_store->mainContext();
    FavoritesService m_service{m_context, mainProfileId};
};

TEST_F(FavoritesServiceTest, ATogglePutsAMarkAndTheNextTakesItAway) {
    EXPECT_FALSE(m_service.isFavorite("main_1"));
    const Date before = currentDate();
    EXPECT_TRUE(m_service.toggleFavorite("main_1"));
    EXPECT_TRUE(m_service.isFavorite("main_1"));
    const auto rows = m_context.fetch<Favorite>();
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].id, "main_main_1");
    EXPECT_EQ(rows[0].profileId, "main");
    EXPECT_EQ(rows[0].channelId, "main_1");
    EXPECT_GE(rows[0].addedAt, before);
    EXPECT_LE(rows[0].addedAt, currentDate());
    EXPECT_FALSE(m_service.toggleFavorite("main_1"));
    EXPECT_FALSE(m_service.isFavorite("main_1"));
    EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(FavoritesServiceTest, AToggleIsThereForWhoeverOpensTheStoreNext) {
    m_service.toggleFavorite("main_2");
    const auto context = m_store->makeContext();
    EXPECT_TRUE(FavoritesService(*context, "main").isFavorite("main_2"));
}

TEST_F(FavoritesServiceTest, TheLatestComesFirst) {
    m_service.toggleFavorite("main_1");
    m_service.toggleFavorite("main_2");
    EXPECT_THAT(listed(), ElementsAre("main_2", "main_1"));
    insert({mark("main_3", 0), mark("main_2", 9), mark("main_1", 5)});
    EXPECT_THAT(marked(), ElementsAre("main_3", "main_1", "main_2"));
    EXPECT_THAT(listed(), ElementsAre("main_3", "main_1", "main_2"));
}

TEST_F(FavoritesServiceTest, ListsTheItemsAsTheCatalogueHasThem) {
    m_service.toggleFavorite("main_2");
    EXPECT_EQ(m_service.getFavoriteChannels(), std::vector{makeChannel(2)});
}

TEST_F(FavoritesServiceTest, AnItemThatHasLeftTheCatalogueKeepsItsMark) {
    insert({mark("main_1", 1), mark("main_9", 2), mark("main_3", 3)});
    EXPECT_THAT(listed(), ElementsAre("main_1", "main_3"));
    EXPECT_THAT(marked(), ElementsAre("main_1", "main_9", "main_3"));
    EXPECT_TRUE(m_service.isFavorite("main_9"));
    replaceCatalogue(makeChannels(9, 1));
    EXPECT_THAT(listed(), ElementsAre("main_9")) << "it has come back, the others have gone";
    EXPECT_THAT(marked(), ElementsAre("main_1", "main_9", "main_3"));
}

TEST_F(FavoritesServiceTest, RemovingWhatIsNoFavouriteDoesNothing) {
    insert({mark("main_1", 1)});
    int told = 0;
    QObject::connect(m_store.get(), &LibraryStore::changed, m_store.get(), [&told] { ++told; });
    m_service.removeFavorite("main_2");
    EXPECT_THAT(stored(), ElementsAre("main_1"));
    EXPECT_EQ(told, 0);
    m_service.removeFavorite("main_1");
    EXPECT_THAT(stored(), IsEmpty());
    EXPECT_EQ(told, 1);
}

TEST_F(FavoritesServiceTest, OfSeveralMarksOfAnItemOneIsRemoved) {
    auto second = mark("main_1", 1);
    second.id = "from elsewhere";
    insert({mark("main_1", 2), second});
    m_service.removeFavorite("main_1");
    EXPECT_EQ(m_context.count<Favorite>(), 1);
    EXPECT_TRUE(m_service.isFavorite("main_1"));
}

TEST_F(FavoritesServiceTest, AnswersForItsProfileOnly) {
    insert({mark("main_1", 1, "child"), mark("main_2", 2)});
    EXPECT_FALSE(m_service.isFavorite("main_1"));
    EXPECT_THAT(marked(), ElementsAre("main_2"));
    EXPECT_THAT(listed(), ElementsAre("main_2"));
    m_service.removeFavorite("main_1");
    EXPECT_TRUE(FavoritesService(m_context, "child").isFavorite("main_1"));
    EXPECT_TRUE(m_service.toggleFavorite("main_1"));
    EXPECT_EQ(m_context.count<Favorite>(), 3) << "each profile has its own";
}

TEST_F(FavoritesServiceTest, WhatCannotBeReadIsAbsent) {
    insert({mark("main_1", 1)});
    onUserFile("ALTER TABLE favorite RENAME TO elsewhere");
    const LogCapture log;
    EXPECT_FALSE(m_service.isFavorite("main_1"));
    EXPECT_THAT(m_service.getAllFavorites(), IsEmpty());
    EXPECT_THAT(m_service.getFavoriteChannels(), IsEmpty());
    m_service.removeFavorite("main_1");
    EXPECT_EQ(log.messages(LogCategory::general, LogLevel::Error).size(), 4U) << "the log alone knows";
}

TEST_F(FavoritesServiceTest, AnItemThatCannotBeReadIsLeftOut) {
    insert({mark("main_1", 1)});
    executeRaw(m_folder.path() / "catalogue.db", "ALTER TABLE channel RENAME TO elsewhere");
    EXPECT_THAT(listed(), IsEmpty());
    EXPECT_THAT(marked(), ElementsAre("main_1"));
}

TEST_F(FavoritesServiceTest, AMarkThatCannotBeWrittenIsSaidToHoldAndGoesAlongWithALaterSave) {
    refuse("INSERT");
    EXPECT_TRUE(m_service.toggleFavorite("main_1"));
    EXPECT_THAT(stored(), IsEmpty());
    allowChanges();
    EXPECT_TRUE(m_service.toggleFavorite("main_2"));
    EXPECT_THAT(stored(), ElementsAre("main_1", "main_2"));
}

TEST_F(FavoritesServiceTest, ARemovalThatCannotBeWrittenGoesAlongWithALaterSave) {
    insert({mark("main_1", 1), mark("main_2", 2)});
    refuse("DELETE");
    EXPECT_FALSE(m_service.toggleFavorite("main_1"));
    m_service.removeFavorite("main_2");
    EXPECT_THAT(stored(), ElementsAre("main_1", "main_2"));
    allowChanges();
    insert({mark("main_3", 0)});
    EXPECT_THAT(stored(), ElementsAre("main_3"));
}

} // namespace
} // namespace ondavia::testing
