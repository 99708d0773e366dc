#include "platform/linux/SecItemStores.h"
#include "support/PrivateBus.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace ondavia {
namespace {

constexpr const char* secret = "s3cret wörd & more";

testing::PrivateBus& busWithSecretService() {
    static testing::PrivateBus bus;
    static const bool started = (bus.startSecretService(), true);
    static_cast<void>(started);
    return bus;
}

using MakeStore = std::function<std::unique_ptr<SecItemStore>(const std::filesystem::path&)>;

struct Kind final {
    const char* name;
    MakeStore make;
    bool remembers;
};

class SecItemStoreTest : public ::testing::TestWithParam<Kind> {
protected:
    void SetUp() override {
        busWithSecretService();
        store = GetParam().make(folder.path());
        ASSERT_NE(store, nullptr);
        store->SecItemDelete(item);
    }

    testing::TemporaryFolder folder;
    std::unique_ptr<SecItemStore> store;
    SecItemQuery item{"com.ondavia.app", "ondavia_password"};
    OSStatus status = errSecSuccess;
};

TEST_P(SecItemStoreTest, keepsOneItemUnderItsServiceAndAccount) {
    EXPECT_EQ(store->SecItemCopyMatching(item, status), std::nullopt);
    EXPECT_EQ(status, errSecItemNotFound);
    EXPECT_EQ(store->SecItemAdd(item, secret), errSecSuccess);
    EXPECT_EQ(store->SecItemCopyMatching(item, status), secret);
    EXPECT_EQ(status, errSecSuccess);
    EXPECT_EQ(store->SecItemCopyMatching({"com.other", item.account}, status), std::nullopt);
    EXPECT_EQ(store->SecItemCopyMatching({item.service, "ondavia_server"}, status), std::nullopt);
}

TEST_P(SecItemStoreTest, refusesToAddWhatIsThere) {
    EXPECT_EQ(store->SecItemAdd(item, "first"), errSecSuccess);
    EXPECT_EQ(store->SecItemAdd(item, "second"), errSecDuplicateItem);
    EXPECT_EQ(store->SecItemCopyMatching(item, status), "first");
}

TEST_P(SecItemStoreTest, deletesAndSaysWhatWasNotThere) {
    EXPECT_EQ(store->SecItemDelete(item), errSecItemNotFound);
    EXPECT_EQ(store->SecItemAdd(item, ""), errSecSuccess);
    EXPECT_EQ(store->SecItemCopyMatching(item, status), "");
    EXPECT_EQ(store->SecItemDelete(item), errSecSuccess);
    EXPECT_EQ(store->SecItemCopyMatching(item, status), std::nullopt);
}

TEST_P(SecItemStoreTest, keepsItemsForTheNextStartIfItSaysSo) {
    EXPECT_EQ(store->remembers(), GetParam().remembers);
    EXPECT_EQ(store->SecItemAdd(item, secret), errSecSuccess);
    const auto next = GetParam().make(folder.path());
    EXPECT_EQ(next->SecItemCopyMatching(item, status),
              GetParam().remembers ? std::optional<std::string>(secret) : std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Stores, SecItemStoreTest,
    ::testing::Values(Kind{"SecretService", [](const auto&) { return makeSecretServiceStore(); }, true},
                      Kind{"File", [](const auto& folder) { return makeFileVault(folder); }, true},
                      Kind{"Memory", [](const auto&) { return makeMemoryStore(); }, false}),
    [](const auto& information) { return std::string(information.param.name); });

TEST(SecItemStores, aRunningSecretServiceIsChosen) {
    busWithSecretService();
    const testing::TemporaryFolder folder;
    const testing::LogCapture log;
    EXPECT_TRUE(makeSecItemStore(folder.path())->remembers());
    EXPECT_EQ(log.text(), "");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(SecItemStores, theFileVaultIsChosenOnRequestAndReadableByItsOwnerOnly) {
    const testing::TemporaryFolder folder;
    qputenv("ONDAVIA_VAULT", "file");
    const auto store = makeSecItemStore(folder.path());
    qunsetenv("ONDAVIA_VAULT");
    EXPECT_EQ(store->SecItemAdd({"service", "account"}, secret), errSecSuccess);
    struct stat fileStatus {};
    ASSERT_EQ(::stat((folder.path() / "vault.json").c_str(), &fileStatus), 0);
    EXPECT_EQ(fileStatus.st_mode & 0777, 0600U);
}

} // namespace
} // namespace ondavia
