#include "state/KeychainService.h"
#include "base/Redaction.h"
#include "platform/linux/JsonUserDefaults.h"
#include "platform/linux/SecItemStores.h"
#include "state/AppState.h"
#include "support/FullDisk.h"
#include "support/TestSupport.h"

#include "StateFixture.h"

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* server = KeychainService::serverKey;
constexpr const char* username = KeychainService::usernameKey;
constexpr const char* password = KeychainService::passwordKey;

/// A store that answers what the test says and writes down what it is asked.
class ScriptedItems final : public SecItemStore {
public:
    OSStatus SecItemAdd(const SecItemQuery& item, const std::string& data) override {
        calls.push_back("add " + item.service + " " + item.account);
        added = data;
        if (onAdd) {
            onAdd();
        }
        return addStatus;
    }
    std::optional<std::string> SecItemCopyMatching(const SecItemQuery&, OSStatus& status) override {
        status = copyStatus;
        return found;
    }
    OSStatus SecItemDelete(const SecItemQuery& item) override {
        calls.push_back("delete " + item.service + " " + item.account);
        return deleteStatus;
    }
    OSStatus changeTogether(const std::function<OSStatus()>& changes) override { return changes(); }
    bool remembers() const override { return false; }

    std::function<void()> onAdd;
    OSStatus addStatus = errSecSuccess;
    OSStatus copyStatus = errSecItemNotFound;
    OSStatus deleteStatus = errSecSuccess;
    std::optional<std::string> found;
    std::optional<std::string> added;
    std::vector<std::string> calls;
};

class KeychainServiceTest : public StateFixture {
protected:
    void storeInSettings(const std::vector<const char*>& keys) {
        for (const char* key : keys) {
            defaults.setString(key, std::string("settings ") + key);
        }
    }
    std::vector<std::string> errors() const { return log.messages(LogCategory::keychain, LogLevel::Error); }

    LogCapture log;
    ScriptedItems scripted;
    KeychainService failing{scripted, defaults};
    KeychainQueue failingQueue{failing, scheduler};
};

TEST_F(KeychainServiceTest, NamesServiceAndKeys) {
    EXPECT_STREQ(KeychainService::service, "com.ondavia.app");
    EXPECT_STREQ(server, "ondavia_server");
    EXPECT_STREQ(username, "ondavia_username");
    EXPECT_STREQ(password, "ondavia_password");
}

TEST_F(KeychainServiceTest, WhatItHandsOutOrKeepsIsMaskedFromThenOn) {
    ASSERT_TRUE(keychain.set("http://h", server));
    ASSERT_TRUE(keychain.set("loaded-user", username));
    ASSERT_TRUE(keychain.set("loaded-pass", password));
    ASSERT_TRUE(keychain.loadCredentials());
    EXPECT_EQ(maskSecrets("loaded-user:loaded-pass"), "<redacted>:<redacted>");
    scripted.addStatus = -25291;
    EXPECT_FALSE(failing.saveCredentials({"http://h", "kept-user", "kept-pass"}));
    EXPECT_EQ(maskSecrets("kept-user:kept-pass"), "<redacted>:<redacted>");
}

TEST_F(KeychainServiceTest, ASecondValueReplacesTheFirst) {
    EXPECT_TRUE(keychain.set("one", server));
    EXPECT_TRUE(keychain.set("two", server));
    EXPECT_EQ(keychain.get(server), "two");
    EXPECT_TRUE(keychain.remove(server));
    EXPECT_FALSE(keychain.get(server)) << "there was one item only";
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(KeychainServiceTest, DeletesBeforeItAdds) {
    EXPECT_TRUE(failing.set("value", server));
    EXPECT_THAT(scripted.calls,
                ElementsAre("delete com.ondavia.app ondavia_server", "add com.ondavia.app ondavia_server"));
    EXPECT_EQ(scripted.added, "value");
}

TEST_F(KeychainServiceTest, DeletingWhatIsNotThereIsNoFailure) {
    EXPECT_TRUE(keychain.remove(server));
    scripted.deleteStatus = -25300;
    EXPECT_TRUE(failing.remove(server));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(KeychainServiceTest, LogsAFailedDeleteAndGoesOnWithTheAdd) {
    scripted.deleteStatus = -50;
    EXPECT_FALSE(failing.remove(username));
    EXPECT_THAT(errors(), ElementsAre("SecItemDelete failed for key=ondavia_username with OSStatus: -50"));
    EXPECT_TRUE(failing.set("value", username)) << "only the add decides";
}

TEST_F(KeychainServiceTest, LogsAFailedAddWithoutTheValue) {
    scripted.addStatus = -25291;
    EXPECT_FALSE(failing.set("topsecret", password));
    EXPECT_THAT(errors(), ElementsAre("SecItemAdd failed for key=ondavia_password with OSStatus: -25291"));
    EXPECT_EQ(log.text().find("topsecret"), std::string::npos);
}

TEST_F(KeychainServiceTest, ATextThatIsNotUTF8IsNeitherStoredNorDeletesWhatIsThere) {
    EXPECT_TRUE(keychain.set("one", server));
    EXPECT_FALSE(keychain.set("\xFF", server));
    EXPECT_EQ(keychain.get(server), "one");
}

TEST_F(KeychainServiceTest, OnlyAFoundTextIsAnAnswer) {
    scripted.found = "value";
    EXPECT_FALSE(failing.get(server)) << "the status counts";
    scripted.copyStatus = errSecSuccess;
    EXPECT_EQ(failing.get(server), "value");
    scripted.found = "\xFF";
    EXPECT_FALSE(failing.get(server));
    scripted.found.reset();
    EXPECT_FALSE(failing.get(server));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(KeychainServiceTest, LoadsAllThreeOrNothing) {
    keychain.set("s", server);
    keychain.set("u", username);
    EXPECT_FALSE(keychain.loadCredentials());
    keychain.set("", password);
    EXPECT_EQ(keychain.loadCredentials(), (Credentials{"s", "u", ""})) << "an empty text is there";
}

TEST_F(KeychainServiceTest, MigratesOverAPartlyStoredAccount) {
    keychain.set("kept?", server);
    keychain.set("kept?", username);
    storeInSettings({server, username, password});
    keychain.migrateFromUserDefaultsIfNeeded();
    EXPECT_EQ(keychain.loadCredentials(), (Credentials{"settings ondavia_server", "settings ondavia_username",
                                                       "settings ondavia_password"}));
    for (const char* key : {server, username, password}) {
        EXPECT_FALSE(defaults.stringForKey(key)) << key;
    }
}

TEST_F(KeychainServiceTest, AWholeStoredAccountStopsTheMigration) {
    keychain.set("s", server);
    keychain.set("u", username);
    keychain.set("", password);
    storeInSettings({server, username, password});
    keychain.migrateFromUserDefaultsIfNeeded();
    EXPECT_EQ(keychain.loadCredentials(), (Credentials{"s", "u", ""}));
    for (const char* key : {server, username, password}) {
        EXPECT_TRUE(defaults.stringForKey(key)) << key;
    }
}

TEST_F(KeychainServiceTest, AnIncompleteAccountInTheSettingsIsNotMoved) {
    storeInSettings({username});
    keychain.migrateFromUserDefaultsIfNeeded();
    EXPECT_FALSE(keychain.loadCredentials());
    EXPECT_FALSE(keychain.get(username));
    EXPECT_TRUE(defaults.stringForKey(username));
    storeInSettings({server});
    keychain.migrateFromUserDefaultsIfNeeded();
    EXPECT_FALSE(keychain.get(server));
    EXPECT_TRUE(defaults.stringForKey(server));
}

TEST_F(KeychainServiceTest, AMigrationThatCannotWriteStillEmptiesTheSettings) {
    scripted.addStatus = -25291;
    storeInSettings({server, username, password});
    failing.migrateFromUserDefaultsIfNeeded();
    EXPECT_FALSE(failing.loadCredentials());
    for (const char* key : {server, username, password}) {
        EXPECT_FALSE(defaults.stringForKey(key)) << key;
    }
    EXPECT_EQ(errors().size(), 3U);
}

TEST_F(KeychainServiceTest, MovesServerUserNameAndPasswordInThisOrderBeforeTheSettingsForgetThem) {
    storeInSettings({server, username, password});
    std::vector<std::string> moved;
    scripted.onAdd = [&] {
        for (const char* key : {server, username, password}) {
            EXPECT_TRUE(defaults.stringForKey(key)) << key;
        }
        moved.push_back(*scripted.added);
    };
    failing.migrateFromUserDefaultsIfNeeded();
    EXPECT_THAT(moved, ElementsAre("settings ondavia_server", "settings ondavia_username",
                                   "settings ondavia_password"));
    EXPECT_FALSE(defaults.stringForKey(password));
}

TEST_F(KeychainServiceTest, LoggingOutDeletesServerUserNameAndPasswordInThisOrder) {
    AppState state(failingQueue, *manager, makeCurlURLSession);
    scripted.calls.clear();
    state.logout();
    EXPECT_THAT(scripted.calls, ElementsAre("delete com.ondavia.app ondavia_server",
                                            "delete com.ondavia.app ondavia_username",
                                            "delete com.ondavia.app ondavia_password"));
}

TEST_F(KeychainServiceTest, APartThatCannotBeDeletedKeepsNoOther) {
    scripted.deleteStatus = -50;
    EXPECT_FALSE(failing.removeCredentials());
    EXPECT_EQ(scripted.calls.size(), 3U);
    EXPECT_EQ(errors().size(), 3U);
}

TEST_F(KeychainServiceTest, ARefusedPartKeepsTheAccountOfBeforeAsAWhole) {
    ASSERT_TRUE(keychain.saveCredentials({"http://old.example", "ana", "secret"}));
    EXPECT_FALSE(keychain.saveCredentials({"http://new.example", "eva", "\xFF"}));
    EXPECT_EQ(keychain.loadCredentials(), (Credentials{"http://old.example", "ana", "secret"}));
}

class FullVaultTest : public KeychainServiceTest {
protected:
    void SetUp() override {
        KeychainServiceTest::SetUp();
        if (!disk.isMounted()) {
            GTEST_SKIP() << SmallFilesystem::whyNotMounted;
        }
        ASSERT_TRUE(onDisk.saveCredentials({"http://old.example", "ana", "secret"}));
        disk.fill();
    }
    /// What the next start finds.
    std::optional<Credentials> kept() {
        const auto next = makeFileVault(disk.path());
        return KeychainService(*next, defaults).loadCredentials();
    }

    SmallFilesystem disk;
    std::unique_ptr<SecItemStore> vault = makeFileVault(disk.path());
    KeychainService onDisk{*vault, defaults};
};

TEST_F(FullVaultTest, KeepsTheAccountOfBeforeWhereTheNewOneDoesNotFit) {
    EXPECT_FALSE(onDisk.saveCredentials({"http://new.example", "eva", std::string(20'000, 'x')}));
    EXPECT_EQ(kept(), (Credentials{"http://old.example", "ana", "secret"}));
    EXPECT_FALSE(errors().empty());
    EXPECT_EQ(log.text().find("xxxx"), std::string::npos);
    disk.makeRoom();
    EXPECT_TRUE(onDisk.saveCredentials({"http://new.example", "eva", "word"}));
    EXPECT_EQ(kept(), (Credentials{"http://new.example", "eva", "word"}));
}

TEST_F(FullVaultTest, KeepsTheValueOfBeforeWhereANewOneDoesNotFit) {
    EXPECT_FALSE(onDisk.set("other", server));
    EXPECT_EQ(kept(), (Credentials{"http://old.example", "ana", "secret"}));
}

TEST_F(FullVaultTest, ForgetsTheAccountAllTheSame) {
    EXPECT_TRUE(onDisk.removeCredentials());
    EXPECT_FALSE(kept());
    EXPECT_TRUE(std::filesystem::exists(disk.path()));
    EXPECT_FALSE(std::filesystem::exists(disk.path() / "vault.json")) << "the password must not stay";
}

TEST_F(KeychainServiceTest, TheStateHoldsEvenIfTheStoreRefuses) {
    scripted.addStatus = -25291;
    AppState state(failingQueue, *manager, makeCurlURLSession);
    state.saveCredentials("http://tv.example", "ana", "secret");
    EXPECT_TRUE(state.hasCredentials());
    EXPECT_EQ(state.password(), "secret");
    EXPECT_THAT(scripted.calls,
                ElementsAre("delete com.ondavia.app ondavia_server", "add com.ondavia.app ondavia_server",
                            "delete com.ondavia.app ondavia_username", "add com.ondavia.app ondavia_username",
                            "delete com.ondavia.app ondavia_password",
                            "add com.ondavia.app ondavia_password"));
}

} // namespace
} // namespace ondavia::testing
