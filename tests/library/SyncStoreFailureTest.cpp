#include "SyncFixture.h"
#include "library/SyncError.h"

#include <SQLiteCpp/Database.h>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A device with no room for a catalogue.
class FullDeviceTest : public SyncFixture {
protected:
    FullDeviceTest()
        : SyncFixture(StoreOptions{.maximumDownloadBytes = 256 << 10}) {}
};

TEST_F(FullDeviceTest, AWriteThatFailsIsRaisedAndKeepsTheOldCatalogue) {
    storeEarlierCatalogue();
    appState.setTotalMovies(2);
    scriptSmallCatalogue();
    provider.script("get_vod_streams", {body(listJSON(ListKind::Movies, {.count = 5000}))});
    try {
        sync();
        ADD_FAILURE() << "nothing was raised";
    } catch (const StoreError& error) {
        EXPECT_EQ(error.failure(), StoreFailure::Full);
    }
    EXPECT_EQ(provider.requestCount("get_vod_streams"), 1) << "no fault of the server";
    EXPECT_THAT(storedNames(), ElementsAre("Old A", "Old B"));
    EXPECT_EQ(appState.totalMovies(), 2);
    EXPECT_FALSE(playlist());
    EXPECT_EQ(appState.loadingMessage(), "A guardar dados...");
    EXPECT_THAT(journal.starting("toast"), IsEmpty());
}

using CommitTest = SyncFixture;

TEST_F(CommitTest, ThatFailsIsRaisedAsTheStoresOwnError) {
    storeEarlierCatalogue();
    scriptSmallCatalogue();
    QObject::connect(&appState, &AppState::loadingMessageChanged, &appState, [&] {
        if (appState.loadingMessage() == "A guardar dados...") {
            // Renaming the new catalogue into its place fails where a folder stands in the way.
            for (const auto& entry : std::filesystem::directory_iterator(folder.path() / "store")) {
                if (entry.path().filename() == "catalogue.db") {
                    std::filesystem::rename(entry.path(), folder.path() / "moved");
                    std::filesystem::create_directories(folder.path() / "store" / "catalogue.db" / "x");
                    return;
                }
            }
        }
    });
    EXPECT_THROW(sync(), StoreError);
    EXPECT_EQ(appState.totalLive(), 0);
    EXPECT_FALSE(playlist());
}

TEST_F(CommitTest, OfThePlaylistThatFailsIsRaisedWithTheNewCatalogueInItsPlace) {
    storeEarlierCatalogue();
    scriptSmallCatalogue();
    SQLite::Database(folder.path() / "store" / "user.db", SQLite::OPEN_READWRITE)
        .exec("CREATE TRIGGER refuse BEFORE INSERT ON playlist BEGIN SELECT RAISE(ABORT, 'no'); END");
    EXPECT_THROW(sync(), StoreError);
    EXPECT_THAT(storedNames(), ElementsAre("Live 1", "Live 2", "Movie 10", "Movie 11", "Series 20"));
    EXPECT_FALSE(playlist());
    EXPECT_EQ(appState.totalMovies(), 0);
    EXPECT_EQ(appState.loadingMessage(), "A guardar dados...");
}

using UnreadableCatalogueTest = SyncFixture;

TEST_F(UnreadableCatalogueTest, CountsAsOneWithoutRowsWhenThereIsNoNetwork) {
    storeEarlierCatalogue();
    // Opened again, so that no file of it is open any more.
    catalogue.reset();
    store.reset();
    store = LibraryStore::open(folder.path() / "store");
    catalogue = std::make_unique<CatalogueSummary>(*store);
    std::filesystem::remove_all(folder.path() / "store");
    goOffline();
    try {
        sync();
        ADD_FAILURE() << "nothing was raised";
    } catch (const SyncError& error) {
        EXPECT_EQ(error.errorCase(), SyncError::Case::noConnection);
    }
    EXPECT_THAT(journal.starting("toast"), IsEmpty());
}

} // namespace
} // namespace ondavia::testing
