#include "platform/linux/SecItemStores.h"
#include "support/PrivateBus.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

namespace ondavia {
namespace {

TEST(NoSecretService, credentialsLiveInMemoryAndTheLogSaysSo) {
    const testing::PrivateBus bus;
    const testing::TemporaryFolder folder;
    const testing::LogCapture log;
    const auto store = makeSecItemStore(folder.path());
    ASSERT_NE(store, nullptr);
    EXPECT_EQ(store->SecItemAdd({"service", "account"}, "value"), errSecSuccess);
    EXPECT_FALSE(store->remembers());
    OSStatus status = errSecNotAvailable;
    EXPECT_EQ(store->SecItemCopyMatching({"service", "account"}, status), "value");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    const auto lines = log.messages(LogCategory::keychain, LogLevel::Error);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), "no Secret Service answers; the account is kept in memory for this run only");
}

} // namespace
} // namespace ondavia
