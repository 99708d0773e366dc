#include "store/StoreSamples.h"

#include <gmock/gmock.h>

#include <csignal>
#include <sys/resource.h>

namespace ondavia::testing {
namespace {

using ::testing::HasSubstr;

/// Lets no file of this process grow past a size while it lives.
class FileSizeLimit final {
public:
    explicit FileSizeLimit(rlim_t bytes)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        (void)std::signal(SIGXFSZ, m_handler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*m_handler)(int);
    rlimit m_before{};
};

TEST(StoreWithoutRoom, AReplacementPastTheBoundKeepsTheOldRows) {
    const TemporaryFolder folder;
    const auto store = LibraryStore::open(folder.path(), {.maximumDownloadBytes = 4 << 20});
    replaceAll(*store, makeChannels(1, 100, "old"));
    try {
        auto replacement = store->beginReplacement<Channel>();
        for (int chunk = 0; chunk < 100; ++chunk) {
            replacement.append(0, makeChannels(chunk * 1000, 1000, "new"));
        }
        replacement.commit();
        FAIL() << "the bound should have been reached";
    } catch (const StoreError& error) {
        EXPECT_EQ(error.failure(), StoreFailure::Full);
        EXPECT_THAT(error.what(), HasSubstr("no room is left"));
    }
    EXPECT_EQ(store->mainContext().distinct(&Channel::groupTitle), std::vector<std::string>{"old"});
    replaceAll(*store, makeChannels(1, 200, "newer"));
    EXPECT_EQ(store->mainContext().count<Channel>(), 200);
}

TEST(StoreWithoutRoom, AReplacementThatTheSystemStopsKeepsTheOldRows) {
    const TemporaryFolder folder;
    const auto store = LibraryStore::open(folder.path());
    replaceAll(*store, makeChannels(1, 100, "old"));
    {
        const FileSizeLimit limit(4 << 20);
        auto replacement = store->beginReplacement<Channel>();
        EXPECT_THROW(
            {
                for (int chunk = 0; chunk < 100; ++chunk) {
                    replacement.append(0, makeChannels(chunk * 1000, 1000, "new"));
                }
                replacement.commit();
            },
            StoreError);
    }
    EXPECT_EQ(store->mainContext().distinct(&Channel::groupTitle), std::vector<std::string>{"old"});
    replaceAll(*store, makeChannels(1, 200, "newer"));
    EXPECT_EQ(store->mainContext().count<Channel>(), 200);
}

TEST(StoreWithoutRoom, AFailedSaveOfTheUsersRowsKeepsTheOldOnes) {
    const TemporaryFolder folder;
    const auto store = LibraryStore::open(folder.path());
    StoreContext& context = store->mainContext();
    insertAndSave(context, std::vector{Favorite("main", "old")});
    {
        const FileSizeLimit limit(64 << 10);
        for (int number = 0; number < 5000; ++number) {
            context.insert(Favorite("main", "new " + std::to_string(number)));
        }
        EXPECT_THROW(context.save(), StoreError);
    }
    EXPECT_EQ(context.distinct(&Favorite::channelId), std::vector<std::string>{"old"});
    insertAndSave(context, std::vector{Favorite("main", "later")});
    EXPECT_EQ(LibraryStore::open(folder.path())->mainContext().count<Favorite>(), 2);
}

} // namespace
} // namespace ondavia::testing
