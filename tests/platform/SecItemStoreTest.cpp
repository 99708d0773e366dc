#include "platform/linux/SecItemStores.h"
#include "support/FullDisk.h"
#include "support/PrivateBus.h"
#include "support/TestSupport.h"

#include <fstream>
#include <future>
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

TEST_P(SecItemStoreTest, undoesChangesThatBelongTogetherAndDidNotAllSucceed) {
    const SecItemQuery other{"com.ondavia.app", "ondavia_server"};
    store->SecItemDelete(other);
    ASSERT_EQ(store->SecItemAdd(item, secret), errSecSuccess);
    const auto changes = [&] {
        EXPECT_EQ(store->SecItemDelete(item), errSecSuccess);
        EXPECT_EQ(store->SecItemAdd(item, "new"), errSecSuccess);
        EXPECT_EQ(store->changeTogether([&] { return store->SecItemAdd(other, "new"); }), errSecSuccess);
        EXPECT_EQ(store->SecItemCopyMatching(item, status), "new");
        return errSecNotAvailable;
    };
    EXPECT_EQ(store->changeTogether(changes), errSecNotAvailable);
    EXPECT_EQ(store->SecItemCopyMatching(item, status), secret);
    EXPECT_EQ(store->SecItemCopyMatching(other, status), std::nullopt);
    EXPECT_EQ(store->SecItemDelete(item), errSecSuccess);
    EXPECT_EQ(store->SecItemDelete(item), errSecItemNotFound) << "it is there once";
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

TEST(SecItemStores, aKeyringThatRefusesTheNewItemKeepsTheOneOfBefore) {
    testing::PrivateBus& bus = busWithSecretService();
    const auto store = makeSecretServiceStore();
    const SecItemQuery item{"com.ondavia.app", "ondavia_password"};
    OSStatus status = errSecSuccess;
    store->SecItemDelete(item);
    ASSERT_EQ(store->SecItemAdd(item, secret), errSecSuccess);
    const auto replace = [&](const std::string& data) {
        return store->changeTogether([&] {
            EXPECT_EQ(store->SecItemDelete(item), errSecSuccess) << "a smaller file still fits";
            return store->SecItemAdd(item, data);
        });
    };
    const testing::LogCapture log;
    bus.limitKeyringFiles(bus.keyringSize());
    EXPECT_NE(replace(std::string(20'000, 'x')), errSecSuccess);
    bus.limitKeyringFiles(RLIM_INFINITY);
    EXPECT_EQ(store->SecItemCopyMatching(item, status), secret);
    EXPECT_EQ(log.text().find("xxxx"), std::string::npos);
    EXPECT_EQ(replace("new"), errSecSuccess);
    EXPECT_EQ(store->SecItemCopyMatching(item, status), "new");
}

TEST(SecItemStores, aKeyringThatIsGivenUpInTheMiddleKeepsTheItemOfBefore) {
    busWithSecretService();
    const SecItemQuery item{"com.ondavia.app", "ondavia_password"};
    OSStatus status = errSecSuccess;
    const auto store = makeSecretServiceStore();
    store->SecItemDelete(item);
    ASSERT_EQ(store->SecItemAdd(item, secret), errSecSuccess);
    EXPECT_NE(store->changeTogether([&] {
        EXPECT_EQ(store->SecItemDelete(item), errSecSuccess);
        store->giveUp();
        return store->SecItemAdd(item, "new");
    }),
              errSecSuccess);
    EXPECT_EQ(makeSecretServiceStore()->SecItemCopyMatching(item, status), secret);
}

TEST(SecItemStores, aKeyringThatFallsSilentInTheMiddleIsLeftWhenItIsGivenUpTwice) {
    testing::PrivateBus& bus = busWithSecretService();
    const SecItemQuery item{"com.ondavia.app", "ondavia_password"};
    const auto store = makeSecretServiceStore();
    store->SecItemDelete(item);
    ASSERT_EQ(store->SecItemAdd(item, secret), errSecSuccess);
    const testing::LogCapture log;
    std::promise<void> fallsSilent;
    auto change = std::async(std::launch::async, [&] {
        return store->changeTogether([&] {
            EXPECT_EQ(store->SecItemDelete(item), errSecSuccess);
            bus.silenceKeyring();
            fallsSilent.set_value();
            return store->SecItemAdd(item, "new");
        });
    });
    fallsSilent.get_future().wait();
    store->giveUp();
    store->giveUp();
    EXPECT_NE(change.get(), errSecSuccess);
    bus.silenceKeyring(false);
    EXPECT_NE(log.text().find("neither the new item nor the one of before"), std::string::npos);
    EXPECT_EQ(log.text().find("Timeout"), std::string::npos) << "nobody has waited for an answer to the end";
}

TEST(SecItemStores, anItemThatCannotBeReadIsNotChanged) {
    busWithSecretService();
    const SecItemQuery item{"com.ondavia.app", "ondavia_password"};
    const auto store = makeSecretServiceStore();
    store->SecItemDelete(item);
    ASSERT_EQ(store->SecItemAdd(item, secret), errSecSuccess);
    store->giveUp();
    EXPECT_EQ(store->changeTogether([&] {
        EXPECT_EQ(store->SecItemDelete(item), errSecNotAvailable);
        EXPECT_EQ(store->SecItemAdd(item, "new"), errSecNotAvailable);
        return errSecNotAvailable;
    }),
              errSecNotAvailable);
    OSStatus status = errSecSuccess;
    EXPECT_EQ(makeSecretServiceStore()->SecItemCopyMatching(item, status), secret);
}

TEST(SecItemStores, aRunningSecretServiceIsChosen) {
    busWithSecretService();
    const testing::TemporaryFolder folder;
    const testing::LogCapture log;
    const auto store = makeSecItemStore(folder.path());
    OSStatus status = errSecSuccess;
    EXPECT_EQ(store->SecItemCopyMatching({"com.ondavia.app", "nobody's"}, status), std::nullopt);
    EXPECT_EQ(status, errSecItemNotFound);
    EXPECT_TRUE(store->remembers());
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

class FileVaultTest : public ::testing::Test {
protected:
    testing::TemporaryFolder folder;
    SecItemQuery item{"com.ondavia.app", "ondavia_password"};
    OSStatus status = errSecSuccess;
    testing::LogCapture log;
};

TEST_F(FileVaultTest, keepsItsItemsWhenTheDiskIsFull) {
    testing::SmallFilesystem disk;
    if (!disk.isMounted()) {
        GTEST_SKIP() << testing::SmallFilesystem::whyNotMounted;
    }
    const auto vault = makeFileVault(disk.path());
    ASSERT_EQ(vault->SecItemAdd(item, secret), errSecSuccess);
    disk.fill();
    EXPECT_EQ(vault->SecItemAdd({item.service, "ondavia_server"}, "http://provider.test"),
              errSecNotAvailable);
    EXPECT_EQ(makeFileVault(disk.path())->SecItemCopyMatching(item, status), secret);
    EXPECT_EQ(log.messages(LogCategory::keychain, LogLevel::Error),
              std::vector<std::string>(1, "vault: vault.json cannot be written: No space left on device"));
    EXPECT_EQ(vault->SecItemDelete(item), errSecSuccess) << "the last one takes the file with it";
    EXPECT_EQ(makeFileVault(disk.path())->SecItemCopyMatching(item, status), std::nullopt);
}

TEST_F(FileVaultTest, holdsTheItemsOfBeforeUntilAllChangesAreThere) {
    const auto vault = makeFileVault(folder.path());
    ASSERT_EQ(vault->SecItemAdd(item, "old"), errSecSuccess);
    const auto changes = [&] {
        vault->SecItemDelete(item);
        vault->SecItemAdd(item, "new");
        vault->SecItemAdd({item.service, "ondavia_server"}, "http://provider.test");
        EXPECT_EQ(makeFileVault(folder.path())->SecItemCopyMatching(item, status), "old");
        return errSecSuccess;
    };
    EXPECT_EQ(vault->changeTogether(changes), errSecSuccess);
    EXPECT_EQ(makeFileVault(folder.path())->SecItemCopyMatching(item, status), "new");
}

TEST_F(FileVaultTest, keepsADamagedFileAside) {
    const std::string half = "{\"com.ondavia.app\": {\"ondavia_pass";
    std::ofstream(folder.path() / "vault.json") << half;
    const auto vault = makeFileVault(folder.path());
    EXPECT_EQ(vault->SecItemCopyMatching(item, status), std::nullopt);
    EXPECT_EQ(status, errSecItemNotFound);
    EXPECT_EQ(log.messages(LogCategory::keychain, LogLevel::Error),
              std::vector<std::string>{"vault: the file was damaged and is kept as vault.json.damaged"});
    EXPECT_EQ(vault->SecItemAdd(item, secret), errSecSuccess);
    std::ifstream aside(folder.path() / "vault.json.damaged");
    EXPECT_EQ((std::string{std::istreambuf_iterator<char>(aside), {}}), half);
}

TEST_F(FileVaultTest, theLastItemTakesEveryCopyWithIt) {
    const auto vault = makeFileVault(folder.path());
    ASSERT_EQ(vault->SecItemAdd(item, secret), errSecSuccess);
    std::ofstream(folder.path() / "vault.json.damaged") << secret;
    std::ofstream(folder.path() / "vault.json.aB3xYz") << secret;
    EXPECT_EQ(vault->SecItemDelete(item), errSecSuccess);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(FileVaultTest, neverWritesOverAFileThatItCannotRead) {
    // A folder in its place opens, but cannot be read, not even by the administrator.
    std::filesystem::create_directory(folder.path() / "vault.json");
    const auto vault = makeFileVault(folder.path());
    EXPECT_EQ(vault->SecItemAdd(item, secret), errSecNotAvailable);
    EXPECT_EQ(vault->SecItemCopyMatching(item, status), std::nullopt);
    EXPECT_EQ(status, errSecNotAvailable);
    EXPECT_EQ(log.records().size(), 2U);
}

} // namespace
} // namespace ondavia
