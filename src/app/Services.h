#pragma once

#include "guide/EPGService.h"
#include "library/CatalogueSearch.h"
#include "library/CatalogueSummary.h"
#include "library/LibraryRefresh.h"
#include "library/NetworkMonitor.h"
#include "platform/AVAudioSession.h"
#include "platform/NotificationCenter.h"
#include "platform/Scheduler.h"
#include "platform/ScreenBrightness.h"
#include "platform/SecItem.h"
#include "platform/URLSession.h"
#include "platform/UserDefaults.h"
#include "platform/linux/DataFolders.h"
#include "platform/linux/MessageBus.h"
#include "platform/linux/MprisService.h"
#include "platform/linux/PulseVolume.h"
#include "playback/PlayerManager.h"
#include "playback/engine/MpvPlayerFactory.h"
#include "state/AppState.h"
#include "state/KeychainQueue.h"
#include "state/KeychainService.h"
#include "store/LibraryStore.h"

#include <memory>
#include <optional>

namespace ondavia {

/// The object graph below the screens, for the life of the process: built here and nowhere else, by both
/// programs. Main thread; an application object must exist.
class Services final {
public:
    /// Reads the environment. Raises StoreError or std::filesystem::filesystem_error when the library
    /// cannot be opened.
    explicit Services(MpvOutputs outputs);
    ~Services();
    Services(const Services&) = delete;
    Services& operator=(const Services&) = delete;

    [[nodiscard]] GuideEnvironment guideEnvironment();

    DataFolders folders;
    std::unique_ptr<Scheduler> scheduler;
    NotificationCenter notifications;
    std::unique_ptr<UserDefaults> defaults;
    std::unique_ptr<SecItemStore> secItems;
    MessageBus sessionBus{MessageBus::Kind::Session};
    MessageBus systemBus{MessageBus::Kind::System};
    PulseVolume systemVolume;
    std::unique_ptr<ScreenBrightness> screenBrightness;
    std::unique_ptr<AVAudioSession> audioSession;
    std::unique_ptr<IdleInhibitor> idleInhibitor;
    URLSessionFactory makeSession;
    MPNowPlayingInfoCenter nowPlayingInfoCenter;
    MPRemoteCommandCenter remoteCommandCenter;
    std::unique_ptr<LibraryStore> store;
    CatalogueSummary catalogue;
    CatalogueSearch search;
    /// After the store, and so gone before it.
    CountedThreads guideWorkers;
    NetworkMonitor network;
    PlayerManager playerManager;
    /// Absent where nobody is to see what plays, as in a program without a window.
    std::optional<MprisService> mpris;
    KeychainService keychain;
    KeychainQueue keychainQueue;
    AppState appState;
    LibraryRefresh refresh;

private:
    void showOnBus();
};

} // namespace ondavia
