#include "store/StoreSamples.h"

#include <gmock/gmock.h>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

class StoreQueryTest : public ::testing::Test {
protected:
    StoreQueryTest() {
        std::vector<Channel> channels{
            makeChannel(1, "live", "News"),   makeChannel(2, "live", "Sport"),
            makeChannel(3, "movie", "Drama"), makeChannel(4, "movie", "drama 100%_x"),
            makeChannel(5, "series", "News"),
        };
        channels[1].rating = "7";
        channels[2].rating = "8";
        channels[3].adult = true;
        channels[4].seriesId = 50;
        channels[4].addedAt += std::chrono::microseconds(1);
        insertAndSave(m_context, channels);
    }

    /// The numbers of the rows that fulfil a condition, ascending.
    std::vector<std::int64_t> numbers(const Predicate<Channel>& where) {
        return numbers(Query<Channel>{.where = where, .sort = {ascending(&Channel::num)}});
    }
    std::vector<std::int64_t> numbers(const Query<Channel>& query) {
        std::vector<std::int64_t> found;
        m_context.forEach<Channel>(query, [&found](const Channel& channel) { found.push_back(channel.num); });
        return found;
    }

    TemporaryFolder m_folder;
    std::unique_ptr<LibraryStore> m_store = LibraryStore::open(m_folder.path());
    StoreContext& m_context = m_store->mainContext();
};

TEST_F(StoreQueryTest, ComparesMembersOfEveryType) {
    EXPECT_THAT(numbers(field(&Channel::type) == "live"), ElementsAre(1, 2));
    EXPECT_THAT(numbers(field(&Channel::type) != "live"), ElementsAre(3, 4, 5));
    EXPECT_THAT(numbers(field(&Channel::num) < 3), ElementsAre(1, 2));
    EXPECT_THAT(numbers(field(&Channel::num) <= 3), ElementsAre(1, 2, 3));
    EXPECT_THAT(numbers(field(&Channel::num) > 3), ElementsAre(4, 5));
    EXPECT_THAT(numbers(field(&Channel::num) >= 3), ElementsAre(3, 4, 5));
    EXPECT_THAT(numbers(field(&Channel::adult) == true), ElementsAre(4));
    EXPECT_THAT(numbers(field(&Channel::addedAt) > sampleDate), ElementsAre(5));
    EXPECT_THAT(numbers(field(&Channel::seriesId) == 50), ElementsAre(5));
}

TEST_F(StoreQueryTest, ComparesDoubles) {
    insertAndSave(m_context, std::vector{WatchHistory("main", "a", 9.5, 100, "movie"),
                                         WatchHistory("main", "b", 10.5, 100, "movie")});
    EXPECT_EQ(m_context.count(field(&WatchHistory::position) > 10.0), 1);
}

TEST_F(StoreQueryTest, AnAbsentMemberIsUnequalToEveryValue) {
    EXPECT_THAT(numbers(field(&Channel::rating) == "7"), ElementsAre(2));
    EXPECT_THAT(numbers(field(&Channel::rating) != "7"), ElementsAre(1, 3, 4, 5));
    EXPECT_THAT(numbers(field(&Channel::rating) > "0"), ElementsAre(2, 3));
    EXPECT_THAT(numbers(field(&Channel::rating).isNull()), ElementsAre(1, 4, 5));
    EXPECT_THAT(numbers(field(&Channel::rating).isNotNull()), ElementsAre(2, 3));
}

TEST_F(StoreQueryTest, CombinesConditions) {
    const auto live = field(&Channel::type) == "live";
    const auto news = field(&Channel::groupTitle) == "News";
    const auto first = field(&Channel::num) == 1;
    EXPECT_THAT(numbers(live && news), ElementsAre(1));
    EXPECT_THAT(numbers(live || news), ElementsAre(1, 2, 5));
    EXPECT_THAT(numbers(!live && news), ElementsAre(5));
    EXPECT_THAT(numbers(!(live && news)), ElementsAre(2, 3, 4, 5));
    EXPECT_THAT(numbers((live || news) && !first), ElementsAre(2, 5));
    EXPECT_THAT(numbers(live && (news || first)), ElementsAre(1));
}

TEST_F(StoreQueryTest, TheEmptyConditionHoldsForEveryRow) {
    const Predicate<Channel> every;
    const auto live = field(&Channel::type) == "live";
    EXPECT_EQ(m_context.count<Channel>(), 5);
    EXPECT_THAT(numbers(every && live), ElementsAre(1, 2));
    EXPECT_THAT(numbers(live && every), ElementsAre(1, 2));
    EXPECT_THAT(numbers(every || live), ElementsAre(1, 2, 3, 4, 5));
    EXPECT_THAT(numbers(!every), IsEmpty());
}

TEST_F(StoreQueryTest, FindsOneOfAList) {
    EXPECT_THAT(numbers(field(&Channel::id).isOneOf({"main_5", "main_2", "none"})), ElementsAre(2, 5));
    EXPECT_THAT(numbers(field(&Channel::num).isOneOf({1, 4})), ElementsAre(1, 4));
    EXPECT_THAT(numbers(field(&Channel::id).isOneOf({})), IsEmpty());
}

TEST_F(StoreQueryTest, ContainsTakesItsTextLiterally) {
    EXPECT_THAT(numbers(field(&Channel::groupTitle).contains("rama")), ElementsAre(3, 4));
    EXPECT_THAT(numbers(field(&Channel::groupTitle).contains("drama")), ElementsAre(4));
    EXPECT_THAT(numbers(field(&Channel::groupTitle).contains("%")), ElementsAre(4));
    EXPECT_THAT(numbers(field(&Channel::groupTitle).contains("0%_")), ElementsAre(4));
    EXPECT_THAT(numbers(field(&Channel::groupTitle).contains("a_m")), IsEmpty());
}

TEST_F(StoreQueryTest, NoValueIsTakenForSql) {
    EXPECT_THAT(numbers(field(&Channel::type) == "live' OR '1'='1"), IsEmpty());
}

TEST_F(StoreQueryTest, OrdersByKeysThenByInsertion) {
    EXPECT_THAT(numbers(Query<Channel>{.sort = {descending(&Channel::num)}}), ElementsAre(5, 4, 3, 2, 1));
    EXPECT_THAT(numbers(Query<Channel>{.sort = {descending(&Channel::type), descending(&Channel::num)}}),
                ElementsAre(5, 4, 3, 2, 1));
    EXPECT_THAT(numbers(Query<Channel>{.sort = {ascending(&Channel::type), descending(&Channel::num)}}),
                ElementsAre(2, 1, 4, 3, 5));
    EXPECT_THAT(numbers(Query<Channel>{.sort = {descending(&Channel::playlistId)}}),
                ElementsAre(1, 2, 3, 4, 5));
    EXPECT_THAT(numbers(Query<Channel>{.sort = {ascending(&Channel::rating)}}), ElementsAre(1, 4, 5, 2, 3));
}

TEST_F(StoreQueryTest, LimitsAndSkipsRows) {
    const std::vector byNumber{ascending(&Channel::num)};
    EXPECT_THAT(numbers(Query<Channel>{.sort = byNumber, .limit = 2}), ElementsAre(1, 2));
    EXPECT_THAT(numbers(Query<Channel>{.sort = byNumber, .limit = 2, .offset = 3}), ElementsAre(4, 5));
    EXPECT_THAT(numbers(Query<Channel>{.sort = byNumber, .offset = 4}), ElementsAre(5));
    EXPECT_THAT(numbers(Query<Channel>{.sort = byNumber, .limit = 0}), IsEmpty());
}

TEST_F(StoreQueryTest, FetchFirstIsAbsentWithoutRows) {
    EXPECT_FALSE(m_context.fetchFirst<Channel>({.where = field(&Channel::num) == 99}));
    EXPECT_EQ(m_context.fetchFirst<Channel>({.sort = {descending(&Channel::num)}})->num, 5);
}

TEST_F(StoreQueryTest, ListsAndCountsDifferentValues) {
    EXPECT_THAT(m_context.distinct(&Channel::groupTitle),
                ElementsAre("Drama", "News", "Sport", "drama 100%_x"));
    EXPECT_THAT(m_context.distinct(&Channel::groupTitle, field(&Channel::type) == "live"),
                ElementsAre("News", "Sport"));
    EXPECT_THAT(m_context.countsBy(&Channel::type),
                ElementsAre(Pair("live", 2), Pair("movie", 2), Pair("series", 1)));
    EXPECT_THAT(m_context.countsBy(&Channel::rating), ElementsAre(Pair("7", 1), Pair("8", 1)));
}

TEST_F(StoreQueryTest, KeysStandForRows) {
    const auto keys = m_context.fetchKeys<Channel>(
        {.where = field(&Channel::type) == "movie", .sort = {descending(&Channel::num)}});
    ASSERT_EQ(keys.size(), 2U);
    EXPECT_EQ(m_context.fetchByKey<Channel>(keys[0])->num, 4);
    EXPECT_EQ(m_context.fetchByKey<Channel>(keys[1])->num, 3);
    m_context.remove<Channel>("main_4");
    m_context.save();
    EXPECT_FALSE(m_context.fetchByKey<Channel>(keys[0]));
}

TEST_F(StoreQueryTest, KeysOfReplacedRowsNameNoOtherRow) {
    replaceAll(*m_store, makeChannels(1, 50));
    const auto before = m_context.fetchKeys<Channel>();
    replaceAll(*m_store, makeChannels(1, 50));
    for (const std::int64_t key : before) {
        EXPECT_FALSE(m_context.fetchByKey<Channel>(key));
    }
}

TEST_F(StoreQueryTest, FetchesSomeMembers) {
    const auto rows = m_context.fetchMembers(
        Query<Channel>{.where = field(&Channel::num) >= 4, .sort = {ascending(&Channel::num)}},
        &Channel::name, &Channel::seriesId, &Channel::adult);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].members, std::make_tuple(std::string("Item 4"), std::optional<std::int64_t>(), true));
    EXPECT_EQ(rows[1].members,
              std::make_tuple(std::string("Item 5"), std::optional<std::int64_t>(50), false));
    EXPECT_EQ(m_context.fetchByKey<Channel>(rows[1].key)->num, 5);
}

} // namespace
} // namespace ondavia::testing
