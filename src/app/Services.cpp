#include "app/Services.h"

#include "base/AppLogger.h"
#include "platform/linux/CurlURLSession.h"
#include "platform/linux/JsonUserDefaults.h"
#include "platform/linux/LinuxAudioSession.h"
#include "platform/linux/QtPathMonitor.h"
#include "platform/linux/QtScheduler.h"
#include "platform/linux/SecItemStores.h"

#include <QThreadPool>

namespace ondavia {

Services::Services(MpvOutputs outputs)
    : folders(DataFolders::fromEnvironment())
    , scheduler(makeQtScheduler())
    , defaults(std::make_unique<JsonUserDefaults>(folders.settings / "settings.json"))
    , secItems(makeSecItemStore(folders.vault))
    , audioSession(makeLinuxAudioSession())
    , idleInhibitor(makeScreenSaverInhibitor())
    , makeSession(
          [](const URLSessionConfiguration& configuration) { return makeCurlURLSession(configuration); })
    , store(LibraryStore::open(folders.store))
    , catalogue(*store)
    , network(makeQtPathMonitor())
    , playerManager(makeMpvPlayerFactory(notifications, outputs), notifications, *scheduler, *audioSession)
    , keychain(*secItems, *defaults)
    , appState(keychain, playerManager, makeSession) {
    PlayerManager::setShared(&playerManager);
    QObject::connect(&playerManager, &PlayerManager::isPlayingChanged, &playerManager,
                     [this] { idleInhibitor->setInhibited(playerManager.isPlaying()); });
}

/// A synchronisation may be under way: whatever writes to the store comes to rest before the store goes.
Services::~Services() {
    endAllTransfers();
    QThreadPool::globalInstance()->waitForDone();
}

SyncEnvironment Services::syncEnvironment() {
    return {*store, catalogue, appState, *defaults, network, *scheduler};
}

GuideEnvironment Services::guideEnvironment() {
    return {*store, makeSession, folders.cache, guideWorkers};
}

} // namespace ondavia
