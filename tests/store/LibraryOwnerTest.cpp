#include "store/StoreSamples.h"
#include "support/FullDisk.h"

#include <gtest/gtest.h>

namespace ondavia::testing {
namespace {

class LibraryOwnerTest : public ::testing::Test {
protected:
    /// The failure of `work`, if it raises.
    static std::optional<StoreFailure> failureOf(const std::function<void()>& work) {
        try {
            work();
        } catch (const StoreError& error) {
            return error.failure();
        }
        return std::nullopt;
    }
    void replaceFor(const std::string& owner, const std::string& group) const {
        auto replacement = store->beginReplacement<Channel>(owner);
        replacement.append(0, makeChannels(1, 10, group));
        replacement.commit();
    }
    [[nodiscard]] std::vector<std::string> groups() const {
        return store->mainContext().distinct(&Channel::groupTitle);
    }

    TemporaryFolder folder;
    std::unique_ptr<LibraryStore> store = LibraryStore::open(folder.path());
};

TEST_F(LibraryOwnerTest, AStoreOfNobodysYetTakesRowsForAnybody) {
    replaceFor("ana", "hers");
    EXPECT_EQ(groups(), std::vector<std::string>{"hers"});
}

TEST_F(LibraryOwnerTest, RowsForSomebodyElseAreRefusedAtTheirPublication) {
    store->setOwner("ana");
    replaceFor("ana", "hers");
    auto replacement = store->beginReplacement<Channel>("ana");
    replacement.append(0, makeChannels(1, 10, "later"));
    LibraryStore::open(folder.path())->setOwner("eva");
    EXPECT_EQ(failureOf([&] { replacement.commit(); }), StoreFailure::NotOwner);
    EXPECT_EQ(groups(), std::vector<std::string>{"hers"});
    replaceFor("eva", "eva's");
    EXPECT_EQ(groups(), std::vector<std::string>{"eva's"});
}

TEST_F(LibraryOwnerTest, SingleRowsForSomebodyElseAreDropped) {
    store->setOwner("ana");
    StoreContext& context = store->mainContext();
    context.insert(Favorite("main", "old"));
    context.saveFor("ana");
    context.insert(Favorite("main", "new"));
    EXPECT_EQ(failureOf([&] { context.saveFor("eva"); }), StoreFailure::NotOwner);
    context.save();
    EXPECT_EQ(context.count<Favorite>(), 1);
}

TEST_F(LibraryOwnerTest, OutlivesTheProcess) {
    store->setOwner("ana");
    store = LibraryStore::open(folder.path());
    EXPECT_EQ(failureOf([&] { store->requireOwner("eva"); }), StoreFailure::NotOwner);
    EXPECT_EQ(failureOf([&] { store->requireOwner("ana"); }), std::nullopt);
}

TEST_F(LibraryOwnerTest, AClaimYieldsToWhoeverChangedTheOwnerMeanwhile) {
    const auto other = LibraryStore::open(folder.path());
    store->claim("ana");
    EXPECT_EQ(failureOf([&] { store->requireOwner("ana"); }), std::nullopt);
    other->claim("eva");
    EXPECT_EQ(failureOf([&] { store->requireOwner("ana"); }), std::nullopt) << "eva had not seen ana";
    other->setOwner("eva");
    EXPECT_EQ(failureOf([&] { store->requireOwner("ana"); }), StoreFailure::NotOwner);
}

TEST_F(LibraryOwnerTest, ChangesEvenOnAFullDevice) {
    const SmallFilesystem disk;
    if (!disk.isMounted()) {
        GTEST_SKIP() << SmallFilesystem::whyNotMounted;
    }
    const auto onDisk = LibraryStore::open(disk.path() / "store");
    onDisk->setOwner("ana");
    disk.fill();
    onDisk->setOwner(LibraryStore::nobody);
    EXPECT_EQ(failureOf([&] { onDisk->requireOwner("ana"); }), StoreFailure::NotOwner);
    disk.makeRoom();
}

} // namespace
} // namespace ondavia::testing
