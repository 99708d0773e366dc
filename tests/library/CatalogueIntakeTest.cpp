#include "library/CatalogueIntake.h"

#include "platform/linux/CurlURLSession.h"
#include "store/LibraryStore.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <future>

namespace ondavia::testing {
namespace {

using Intake = SectionIntake<XtreamVodStream>;

std::vector<XtreamVodStream> oneMovie(std::int64_t id) {
    XtreamVodStream row;
    row.streamId = id;
    row.name = "Movie " + std::to_string(id);
    row.categoryId = "1";
    std::vector<XtreamVodStream> rows;
    rows.push_back(std::move(row));
    return rows;
}

class CatalogueIntakeTest : public ::testing::Test {
protected:
    TemporaryFolder folder;
    std::unique_ptr<LibraryStore> store = LibraryStore::open(folder.path() / "store");
    std::shared_ptr<Replacement<Channel>> rows =
        std::make_shared<Replacement<Channel>>(store->beginReplacement<Channel>());
    FirstFailure failure;
    Intake intake{std::make_shared<XtreamAPIClient>("http://tv.example", "ana", "word", makeCurlURLSession),
                  rows, failure, CatalogueSection::Movies, &XtreamAPIClient::normalizeVodStreams};
};

TEST_F(CatalogueIntakeTest, RowsWaitForTheirCategories) {
    intake.take(oneMovie(1));
    EXPECT_EQ(intake.normalizedCount(), 0);
    intake.setCategories({{"1", "Drama"}});
    intake.take(oneMovie(2));
    EXPECT_EQ(intake.normalizedCount(), 2);
    rows->commit();
    EXPECT_EQ(store->mainContext().count<Channel>(field(&Channel::groupTitle) == "Drama"), 2);
}

TEST_F(CatalogueIntakeTest, ManyRowsHoldUpTheirSenderUntilTheCategoriesCome) {
    std::atomic<std::size_t> taken = 0;
    auto sender = std::async(std::launch::async, [&] {
        for (std::size_t batch = 0; batch < 2 * Intake::maximumWaitingBatches; ++batch) {
            intake.take(oneMovie(static_cast<std::int64_t>(batch)));
            ++taken;
        }
    });
    EXPECT_EQ(sender.wait_for(std::chrono::milliseconds(300)), std::future_status::timeout);
    EXPECT_EQ(taken, Intake::maximumWaitingBatches - 1);
    intake.setCategories({});
    sender.get();
    EXPECT_EQ(intake.normalizedCount(), 2 * static_cast<std::int64_t>(Intake::maximumWaitingBatches));
}

TEST_F(CatalogueIntakeTest, AnAccountThatEndsLetsGoOfASenderThatWaits) {
    std::stop_source account;
    Intake ending{std::make_shared<XtreamAPIClient>("http://tv.example", "ana", "word", makeCurlURLSession),
                  rows,
                  failure,
                  CatalogueSection::Movies,
                  &XtreamAPIClient::normalizeVodStreams,
                  account.get_token()};
    std::atomic<std::size_t> taken = 0;
    auto sender = std::async(std::launch::async, [&] {
        while (true) {
            ending.take(oneMovie(static_cast<std::int64_t>(taken)));
            ++taken;
        }
    });
    ASSERT_TRUE(
        waitUntil([&] { return taken == Intake::maximumWaitingBatches - 1; }, std::chrono::minutes(1)));
    account.request_stop();
    EXPECT_THROW(sender.get(), std::system_error);
    EXPECT_THROW(ending.take(oneMovie(1)), std::system_error);
}

TEST_F(CatalogueIntakeTest, AClosedCatalogueLeavesNoFileThoughItsSectionsStay) {
    intake.setCategories({});
    intake.take(oneMovie(1));
    const auto files = [this] {
        std::size_t count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path() / "store")) {
            count += entry.path().filename().string().starts_with("catalogue-") ? 1 : 0;
        }
        return count;
    };
    const std::size_t before = files();
    rows->close();
    EXPECT_EQ(files(), before - 1);
}

TEST_F(CatalogueIntakeTest, ARestartForgetsWaitingAndWrittenRows) {
    intake.take(oneMovie(1));
    intake.restart();
    intake.setCategories({});
    intake.take(oneMovie(2));
    EXPECT_EQ(intake.normalizedCount(), 1);
    intake.restart();
    EXPECT_EQ(intake.normalizedCount(), 0);
    intake.take(oneMovie(3));
    intake.finish();
    EXPECT_EQ(intake.normalizedCount(), 1);
}

TEST(FirstFailure, KeepsTheFirst) {
    FirstFailure failure;
    failure.rethrow();
    EXPECT_FALSE(failure.isKept());
    failure.keep(std::make_exception_ptr(StoreError(StoreFailure::Full, "full")));
    failure.keep(std::make_exception_ptr(std::runtime_error("another")));
    EXPECT_TRUE(failure.isKept());
    EXPECT_THROW(failure.rethrow(), StoreError);
}

} // namespace
} // namespace ondavia::testing
