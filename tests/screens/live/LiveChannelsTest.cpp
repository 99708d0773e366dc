// What the live player zaps through.
#include "LivePlayerFixture.h"
#include "screens/player/PlayerViewModel.h"
#include "screens/shell/FullScreenPlayers.h"
#include "store/StoreSamples.h"

#include <QAbstractItemModelTester>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LiveChannelsTest : public LivePlayerFixture {
protected:
    [[nodiscard]] LiveChannels fetch() { return LiveChannels::fetch(store->mainContext()); }
    [[nodiscard]] static std::vector<std::string> names(const LiveChannels& channels) {
        std::vector<std::string> found;
        for (std::size_t row = 0; row < channels.size(); ++row) {
            found.push_back(channels.at(row).name);
        }
        return found;
    }
};

TEST_F(LiveChannelsTest, AreTheLiveOnesByNumber) {
    EXPECT_THAT(names(fetch()), ElementsAre("Canal 1", "Canal 2", "Canal 3", "Canal 4", "Canal 5"));
}

TEST_F(LiveChannelsTest, HaveTheirCategoriesInTheOrderOfFirstAppearance) {
    fill({channel(6, "Desporto")});
    const LiveChannels channels = fetch();
    ASSERT_EQ(channels.categories().size(), 3U);
    EXPECT_EQ(channels.categories()[0].name, "Notícias");
    EXPECT_EQ(channels.categories()[1].name, "Música");
    EXPECT_EQ(channels.categories()[2].name, "Desporto");
    EXPECT_THAT(channels.inCategory("Desporto"), ElementsAre(4U, 5U));
    EXPECT_THAT(channels.inCategory("Infantil"), IsEmpty());
}

TEST_F(LiveChannelsTest, KeepWhatTheOtherScreensNeedOfAChannel) {
    Channel full = channel(7, "Regionais");
    full.logo = "http://tv.example/logo.png";
    full.tvArchive = true;
    full.tvArchiveDuration = 3;
    full.adult = true;
    full.addedAt = Date(std::chrono::hours(24));
    fill({full});
    const LiveChannels channels = fetch();
    EXPECT_EQ(channels.channel(*channels.withNumber(7)), full);
    EXPECT_FALSE(channels.withNumber(70));
}

TEST_F(LiveChannelsTest, AreNoneWhereTheStoreCannotBeRead) {
    executeRaw(folder.path() / "store" / "catalogue.db", "ALTER TABLE channel RENAME TO elsewhere");
    EXPECT_TRUE(fetch().isEmpty());
}

TEST_F(LiveChannelsTest, AreListedByCategory) {
    const auto channels = std::make_shared<LiveChannels>(fetch());
    LiveChannelListModel list(channels);
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(list.rowCount(), 0);
    list.setCategory("Notícias");
    ASSERT_EQ(list.rowCount(), 3);
    EXPECT_EQ(list.index(1).data(LiveChannelListModel::NameRole).toString(), QStringLiteral("Canal 2"));
    EXPECT_EQ(list.index(1).data(LiveChannelListModel::NumberRole).toString(), QStringLiteral("2"));
    EXPECT_TRUE(list.index(1).data(LiveChannelListModel::LogoRole).toUrl().isEmpty());
    EXPECT_EQ(list.rowOf("main_3"), 2);
    EXPECT_EQ(list.rowOf("main_4"), -1);
    EXPECT_FALSE(list.placeOf(3));
    EXPECT_FALSE(list.placeOf(-1));
    list.setCategory("Infantil");
    EXPECT_EQ(list.rowCount(), 0);
}

class FullScreenPlayersTest : public LivePlayerFixture {
protected:
    FullScreenPlayers players{services()};
};

TEST_F(FullScreenPlayersTest, ShowChannelsInTheLivePlayerAndAllElseInTheOther) {
    EXPECT_NE(dynamic_cast<LivePlayerViewModel*>(players.make(channel(1, "Notícias")).get()), nullptr);
    EXPECT_NE(dynamic_cast<PlayerViewModel*>(players.make(title(9, "movie", "Drama", "Noite")).get()),
              nullptr);
    EXPECT_NE(dynamic_cast<PlayerViewModel*>(players.make(title(9, "series", "Drama", "Noite")).get()),
              nullptr);
}

TEST_F(FullScreenPlayersTest, ReadTheChannelsForTheFirstOneThatIsOpened) {
    (void)players.make(title(9, "movie", "Drama", "Noite"));
    EXPECT_TRUE(players.cachedLiveChannels()->isEmpty());
    (void)players.make(channel(1, "Notícias"));
    EXPECT_EQ(players.cachedLiveChannels()->size(), 5U);
}

TEST_F(FullScreenPlayersTest, KeepTheChannelsOfAnEarlierCatalogue) {
    (void)players.make(channel(1, "Notícias"));
    store->mainContext().removeAll<Channel>();
    store->mainContext().save();
    fill({channel(8, "Notícias")});
    (void)players.make(channel(8, "Notícias"));
    EXPECT_EQ(players.cachedLiveChannels()->size(), 5U);
}

TEST_F(FullScreenPlayersTest, AskAgainWhereThereWereNone) {
    store->mainContext().removeAll<Channel>();
    store->mainContext().save();
    (void)players.make(channel(1, "Notícias"));
    EXPECT_TRUE(players.cachedLiveChannels()->isEmpty());
    fill({channel(8, "Notícias")});
    (void)players.make(channel(8, "Notícias"));
    EXPECT_EQ(players.cachedLiveChannels()->size(), 1U);
}

TEST_F(FullScreenPlayersTest, ForgetTheAddressesOfAnAccountThatHasGone) {
    (void)players.make(channel(1, "Notícias"));
    Q_EMIT appState.accountChanged();
    EXPECT_TRUE(players.cachedLiveChannels()->isEmpty());
}

} // namespace
} // namespace ondavia::testing
