#pragma once

#include "guide/EPGService.h"
#include "library/CatalogueSummary.h"
#include "library/DataSyncService.h"
#include "library/NetworkMonitor.h"
#include "platform/AVAudioSession.h"
#include "platform/NotificationCenter.h"
#include "platform/Scheduler.h"
#include "platform/SecItem.h"
#include "platform/URLSession.h"
#include "platform/UserDefaults.h"
#include "platform/linux/DataFolders.h"
#include "playback/PlayerManager.h"
#include "playback/engine/MpvPlayerFactory.h"
#include "state/AppState.h"
#include "state/KeychainService.h"
#include "store/LibraryStore.h"

#include <memory>

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

    [[nodiscard]] SyncEnvironment syncEnvironment();
    [[nodiscard]] GuideEnvironment guideEnvironment();

    DataFolders folders;
    std::unique_ptr<Scheduler> scheduler;
    NotificationCenter notifications;
    std::unique_ptr<UserDefaults> defaults;
    std::unique_ptr<SecItemStore> secItems;
    std::unique_ptr<AVAudioSession> audioSession;
    std::unique_ptr<IdleInhibitor> idleInhibitor;
    URLSessionFactory makeSession;
    std::unique_ptr<LibraryStore> store;
    CatalogueSummary catalogue;
    /// After the store, and so gone before it.
    GuideWorkers guideWorkers;
    NetworkMonitor network;
    PlayerManager playerManager;
    KeychainService keychain;
    AppState appState;
};

} // namespace ondavia
