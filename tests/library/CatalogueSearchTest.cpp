#include "library/CatalogueSearch.h"

#include "SyncFixture.h"
#include "library/SearchIndex.h"

#include <optional>

namespace ondavia::testing {
namespace {

class CatalogueSearchTest : public SyncFixture {
protected:
    void add(std::int64_t num, const std::string& name) {
        Channel channel;
        channel.id = "main_" + std::to_string(num);
        channel.num = num;
        channel.type = "movie";
        channel.name = name;
        store->mainContext().insert(channel);
        store->mainContext().save();
    }
    static std::size_t found(CatalogueSearch& search, const char* text) {
        return resultOf(search.index())->find(text).size();
    }
};

TEST_F(CatalogueSearchTest, EverySearchGetsTheSameIndex) {
    add(1, "O Farol");
    CatalogueSearch search(*store);
    search.prefetch();
    const auto first = resultOf(search.index());
    EXPECT_EQ(first->find("farol").size(), 1U);
    EXPECT_EQ(resultOf(search.index()), first);
}

TEST_F(CatalogueSearchTest, IsReadWithoutBeingPrefetched) {
    add(1, "O Farol");
    CatalogueSearch search(*store);
    EXPECT_EQ(found(search, "farol"), 1U);
}

TEST_F(CatalogueSearchTest, AChangeIsFound) {
    CatalogueSearch search(*store);
    EXPECT_EQ(found(search, "farol"), 0U);
    add(1, "O Farol");
    EXPECT_EQ(found(search, "farol"), 1U) << "in the same turn of the event loop";
    search.prefetch();
    add(2, "O Faroleiro");
    EXPECT_EQ(found(search, "farol"), 2U) << "though another one was on its way";
}

TEST_F(CatalogueSearchTest, WhoHasAnIndexKeepsItThroughAChange) {
    add(1, "O Farol");
    CatalogueSearch search(*store);
    const auto before = resultOf(search.index());
    add(2, "O Faroleiro");
    EXPECT_NE(resultOf(search.index()), before);
    EXPECT_EQ(before->find("farol").size(), 1U);
}

TEST_F(CatalogueSearchTest, ACatalogueThatCannotBeReadIsTriedAgain) {
    add(1, "O Farol");
    const std::filesystem::path link = folder.path() / "store" / "catalogue.db";
    const std::filesystem::path kept = folder.path() / "kept.db";
    CatalogueSearch search(*store);
    std::filesystem::rename(link, kept);
    EXPECT_THROW(resultOf(search.index()), StoreError);
    std::filesystem::rename(kept, link);
    EXPECT_EQ(found(search, "farol"), 1U);
}

TEST_F(CatalogueSearchTest, MayGoWhileItIsRead) {
    add(1, "O Farol");
    std::optional<CatalogueSearch> search;
    search.emplace(*store);
    const auto wanted = search->index();
    search.reset();
    EXPECT_TRUE(waitUntil([&wanted] { return wanted.isReady(); }));
}

} // namespace
} // namespace ondavia::testing
