#include "SyncFixture.h"

#include <QThreadPool>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

class CatalogueSummaryTest : public SyncFixture {
protected:
    void add(const std::string& id, const std::string& type, const std::string& group) {
        Channel channel;
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
    EXPECT_THAT(catalogue->groups("movie"), ElementsAre(Pair("Art", 1), Pair("Drama", 1)));
    EXPECT_EQ(catalogue->count("live"), 1);
    EXPECT_THAT(catalogue->groups("series"), IsEmpty());
    add("4", "movie", "Drama");
    EXPECT_THAT(catalogue->groups("movie"), ElementsAre(Pair("Art", 1), Pair("Drama", 2)));
    EXPECT_EQ(catalogue->count("movie"), 3);
}

TEST_F(CatalogueSummaryTest, DropsWhatWasCountedAheadOfAChange) {
    add("1", "movie", "Drama");
    catalogue->prefetch();
    EXPECT_EQ(catalogue->count("movie"), 1);
    catalogue->prefetch();
    QThreadPool::globalInstance()->waitForDone();
    add("2", "movie", "Drama");
    EXPECT_EQ(catalogue->count("movie"), 2);
}

TEST_F(CatalogueSummaryTest, CountsAgainWhereCountingAheadFailed) {
    add("1", "movie", "Drama");
    const std::filesystem::path link = folder.path() / "store" / "catalogue.db";
    const std::filesystem::path kept = folder.path() / "kept.db";
    std::filesystem::rename(link, kept);
    catalogue->prefetch();
    QThreadPool::globalInstance()->waitForDone();
    std::filesystem::rename(kept, link);
    EXPECT_EQ(catalogue->count("movie"), 1);
}

} // namespace
} // namespace ondavia::testing
