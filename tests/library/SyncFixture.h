#pragma once

#include "ScriptedProvider.h"
#include "library/CatalogueSummary.h"
#include "library/DataSyncService.h"
#include "library/NetworkMonitor.h"
#include "platform/NWPathMonitor.h"
#include "platform/linux/CurlURLSession.h"
#include "platform/linux/JsonUserDefaults.h"
#include "platform/linux/SecItemStores.h"
#include "playback/FakePlayer.h"
#include "playback/PlayerManager.h"
#include "protocol/XtreamAPIClient.h"
#include "state/AppState.h"
#include "state/KeychainQueue.h"
#include "store/LibraryStore.h"
#include "support/ManualScheduler.h"
#include "support/TestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTimer>

#include <string>
#include <vector>

namespace ondavia::testing {

/// A path that changes when the test says so, reported on the test's thread.
class ScriptedPath final : public NWPathMonitor {
public:
    void setPathUpdateHandler(UpdateHandler handler) override { m_handler = std::move(handler); }
    void start() override { started = true; }
    void report(const NWPath& path) const { m_handler(path); }

    bool started = false;

private:
    UpdateHandler m_handler;
};

/// Writes down what a synchronisation shows, a line each, in order.
class StateJournal final : public QObject {
public:
    explicit StateJournal(const AppState& state);

    std::vector<std::string> lines;
    /// The lines that begin with `prefix`.
    [[nodiscard]] std::vector<std::string> starting(const std::string& prefix) const;
};

/// A provider, a store, settings and a state of their own, real transfers, and a clock that leaps over every
/// wait as soon as somebody waits.
class SyncFixture : public ::testing::Test {
protected:
    explicit SyncFixture(const StoreOptions& options = {});
    /// Lets what a test left running come to rest before anything that it uses goes.
    void TearDown() override;

    void goOffline();
    /// Scripts two live channels, two films and one series in one category each.
    void scriptSmallCatalogue();
    [[nodiscard]] std::shared_ptr<XtreamAPIClient> client() const;
    /// Runs one synchronisation to its end.
    void sync(std::stop_token stop = {});
    /// Puts two films of an earlier catalogue into the store.
    void storeEarlierCatalogue();
    [[nodiscard]] std::vector<std::string> storedNames() const;
    [[nodiscard]] std::optional<Playlist> playlist() const;
    [[nodiscard]] SyncEnvironment environment();

    TemporaryFolder folder;
    ScriptedProvider provider;
    ManualScheduler scheduler;
    Journal engineJournal;
    NotificationCenter notifications;
    MPNowPlayingInfoCenter nowPlaying;
    MPRemoteCommandCenter commands;
    FakeAudioSession audio{engineJournal};
    PlayerManager playerManager;
    JsonUserDefaults defaults{folder.path() / "settings.json"};
    std::unique_ptr<SecItemStore> items = makeMemoryStore();
    KeychainService keychain{*items, defaults};
    KeychainQueue keychainQueue{keychain, scheduler};
    AppState appState{keychainQueue, playerManager, makeCurlURLSession};
    ScriptedPath* path = nullptr;
    std::unique_ptr<NetworkMonitor> network;
    std::unique_ptr<LibraryStore> store;
    std::unique_ptr<CatalogueSummary> catalogue;
    StateJournal journal{appState};
    QTimer leapingClock;
};

} // namespace ondavia::testing
