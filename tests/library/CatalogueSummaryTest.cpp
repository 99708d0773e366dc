#include "SyncFixture.h"

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

class CatalogueSummaryTest : public SyncFixture {
protected:
    using Counts = std::vector<std::pair<std::string, std::int64_t>>;

    [[nodiscard]] Counts counts(const std::string& type) {
        Counts found;
        for (const KeyGroup& group : catalogue->groups(type)) {
            found.emplace_back(group.value, group.count);
        }
        return found;
    }
    [[nodiscard]] std::vector<std::string> idsOfFirst(const KeyGroup& group) {
        std::vector<std::string> ids;
        for (const std::int64_t key : group.firstKeys) {
            ids.push_back(store->mainContext().fetchByKey<Channel>(key).value_or(Channel()).id);
        }
        return ids;
    }
    void countAhead() {
        catalogue->prefetch();
        ASSERT_TRUE(waitUntil([this] { return catalogue->isReady(); }));
    }
    void add(const std::string& id, const std::string& type, const std::string& group, std::int64_t num = 0) {
        Channel channel;
        channel.num = num;
        channel.id = id;
        channel.type = type;
        channel.groupTitle = group;
        store->mainContext().insert(channel);
        store->mainContext().save();
    }
};

TEST_F(CatalogueSummaryTest, CountsGroupsByTypeAndAgainAfterAChange) {
    add("1", "movie", "Drama");
    add("2", "movie", "Art");
    add("3", "live", "Art");
    EXPECT_THAT(counts("movie"), ElementsAre(Pair("Art", 1), Pair("Drama", 1)));
    EXPECT_EQ(catalogue->count("live"), 1);
    EXPECT_THAT(counts("series"), IsEmpty());
    add("4", "movie", "Drama");
    EXPECT_THAT(counts("movie"), ElementsAre(Pair("Art", 1), Pair("Drama", 2)));
    EXPECT_EQ(catalogue->count("movie"), 3);
}

TEST_F(CatalogueSummaryTest, DropsWhatWasCountedAheadOfAChange) {
    add("1", "movie", "Drama");
    catalogue->prefetch();
    EXPECT_EQ(catalogue->count("movie"), 1);
    countAhead();
    add("2", "movie", "Drama");
    EXPECT_EQ(catalogue->count("movie"), 2);
}

TEST_F(CatalogueSummaryTest, CountsAgainWhereCountingAheadFailed) {
    add("1", "movie", "Drama");
    const std::filesystem::path link = folder.path() / "store" / "catalogue.db";
    const std::filesystem::path kept = folder.path() / "kept.db";
    std::filesystem::rename(link, kept);
    countAhead();
    std::filesystem::rename(kept, link);
    EXPECT_EQ(catalogue->count("movie"), 1);
}

TEST_F(CatalogueSummaryTest, KnowsTheFirstRowsOfAGroupByTheirNumbers) {
    for (std::int64_t num = 20; num >= 1; --num) {
        add("drama" + std::to_string(num), "movie", "Drama", num);
    }
    add("late", "movie", "Art", 7);
    add("early", "movie", "Art", 3);
    add("first of two", "movie", "Art", 3);
    const auto groups = catalogue->groups("movie");
    ASSERT_THAT(groups, SizeIs(2));
    EXPECT_THAT(idsOfFirst(groups[0]), ElementsAre("early", "first of two", "late"));
    const auto drama = idsOfFirst(groups[1]);
    EXPECT_THAT(drama, SizeIs(15));
    EXPECT_EQ(drama.front(), "drama1");
    EXPECT_EQ(drama.back(), "drama15");
    EXPECT_EQ(groups[1].count, 20);
}

TEST_F(CatalogueSummaryTest, SaysWhenNobodyHasToWait) {
    add("1", "movie", "Drama");
    EXPECT_FALSE(catalogue->isReady());
    bool isDone = false;
    catalogue->ready().then([&] { isDone = true; });
    ASSERT_TRUE(waitUntil([&] { return isDone; }));
    EXPECT_TRUE(catalogue->isReady());
    EXPECT_EQ(catalogue->count("movie"), 1);
    EXPECT_TRUE(catalogue->isReady()) << "also when somebody has asked";
    add("2", "movie", "Drama");
    EXPECT_FALSE(catalogue->isReady());
}

} // namespace
} // namespace ondavia::testing
