#pragma once

#include "FakeDevices.h"
#include "library/CatalogueSearch.h"
#include "library/CatalogueSummary.h"
#include "library/LibraryRefresh.h"
#include "library/NetworkMonitor.h"
#include "platform/NWPathMonitor.h"
#include "platform/linux/CurlURLSession.h"
#include "platform/linux/JsonUserDefaults.h"
#include "platform/linux/SecItemStores.h"
#include "playback/FakePlayer.h"
#include "playback/PlayerManager.h"
#include "screens/Screens.h"
#include "screens/player/OrientationLock.h"
#include "screens/shell/ContentViewModel.h"
#include "state/AppState.h"
#include "state/KeychainQueue.h"
#include "store/LibraryStore.h"
#include "support/ManualScheduler.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace ondavia::testing {

/// A network that is always there.
class SteadyPath final : public NWPathMonitor {
public:
    void setPathUpdateHandler(UpdateHandler /*handler*/) override {}
    void start() override {}
};

inline Channel title(std::int64_t number, const std::string& type, const std::string& group,
                     const std::string& name) {
    Channel channel;
    channel.id = "main_" + std::to_string(number);
    channel.playlistId = "main";
    channel.streamId = number;
    channel.num = number;
    channel.type = type;
    channel.groupTitle = group;
    channel.name = name;
    channel.url = "http://tv.example/" + type + "/" + std::to_string(number);
    return channel;
}

inline std::vector<CategoryItem> categoryItems(const std::vector<std::string>& names) {
    std::vector<CategoryItem> items;
    for (const std::string& name : names) {
        items.push_back({name, name, 0});
    }
    return items;
}

/// Goes after whoever leaves an orientation of its own.
struct AllOrientationsAgain final {
    AllOrientationsAgain() = default;
    ~AllOrientationsAgain() {
        OrientationLock::set({Qt::PortraitOrientation, Qt::InvertedPortraitOrientation,
                              Qt::LandscapeOrientation, Qt::InvertedLandscapeOrientation});
    }
};

/// Everything below the screens: a real store and real settings in a fresh folder, real transfers, an
/// engine that writes down what it is told, and a clock that stands still.
class ScreensFixture : public ::testing::Test {
protected:
    explicit ScreensFixture(std::unique_ptr<SecItemStore> secItems = makeMemoryStore())
        : items(std::move(secItems))
        , playerManager(PlayerEnvironment{
              [this](const std::string& url, const FSOptions& options) {
                  journal.push_back("create " + url);
                  auto engine = std::make_shared<FakePlayer>(url, options, journal, notifications);
                  engine->fakeView().picture = picture;
                  lastEngine = engine;
                  return engine;
              },
              notifications, scheduler, audio, makeCurlURLSession, nowPlaying, commands}) {}

    void fill(const std::vector<Channel>& channels) {
        for (const Channel& channel : channels) {
            store->mainContext().insert(channel);
        }
        store->mainContext().save();
        drainEvents();
    }

    [[nodiscard]] GuideEnvironment guideEnvironment() {
        return {*store, makeCurlURLSession, folder.path() / "cache", guideWorkers};
    }

    [[nodiscard]] ScreenServices services(const std::string& language = "pt") {
        return {.appState = appState,
                .store = *store,
                .catalogue = catalogue,
                .search = search,
                .playerManager = playerManager,
                .audioSession = audio,
                .systemVolume = systemVolume,
                .screenBrightness = screenBrightness,
                .remoteCommands = commands,
                .defaults = defaults,
                .keychain = keychain,
                .makeSession = makeCurlURLSession,
                .scheduler = scheduler,
                .refresh = refresh,
                .guide = guideEnvironment(),
                .content = content,
                .cacheFolder = folder.path() / "cache",
                .language = language};
    }

    TemporaryFolder folder;
    Journal journal;
    NotificationCenter notifications;
    MPNowPlayingInfoCenter nowPlaying;
    MPRemoteCommandCenter commands;
    ManualScheduler scheduler;
    FakeAudioSession audio{journal};
    FakeSystemVolume systemVolume{audio};
    FakeScreenBrightness screenBrightness;
    std::weak_ptr<FakePlayer> lastEngine;
    /// What the next engine shows. Not owned.
    QQuickItem* picture = nullptr;
    JsonUserDefaults defaults{folder.path() / "settings.json"};
    std::unique_ptr<SecItemStore> items;
    std::unique_ptr<LibraryStore> store = LibraryStore::open(folder.path() / "store");
    CatalogueSummary catalogue{*store};
    CatalogueSearch search{*store};
    NetworkMonitor network{std::make_unique<SteadyPath>()};
    PlayerManager playerManager;
    KeychainService keychain{*items, defaults};
    KeychainQueue keychainQueue{keychain, scheduler};
    AppState appState{keychainQueue, playerManager, makeCurlURLSession};
    CountedThreads guideWorkers;
    LibraryRefresh refresh{{.store = *store,
                            .catalogue = catalogue,
                            .appState = appState,
                            .defaults = defaults,
                            .network = network,
                            .scheduler = scheduler},
                           guideEnvironment()};
    ContentViewModel content{appState, refresh};
};

} // namespace ondavia::testing
