#include "app/Services.h"

#include "base/AppLogger.h"
#include "platform/linux/CurlURLSession.h"
#include "platform/linux/JsonUserDefaults.h"
#include "platform/linux/LinuxAudioSession.h"
#include "platform/linux/LogindBrightness.h"
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
    , screenBrightness(makeLogindBrightness(systemBus))
    , audioSession(makeLinuxAudioSession(systemVolume))
    , idleInhibitor(makeScreenSaverInhibitor(sessionBus))
    , makeSession(
          [](const URLSessionConfiguration& configuration) { return makeCurlURLSession(configuration); })
    , store(LibraryStore::open(folders.store))
    , catalogue(*store)
    , search(*store)
    , network(makeQtPathMonitor())
    , playerManager({makeMpvPlayerFactory(notifications, outputs), notifications, *scheduler, *audioSession,
                     makeSession, nowPlayingInfoCenter, remoteCommandCenter})
    , keychain(*secItems, *defaults)
    , keychainQueue(keychain, *scheduler)
    , appState(keychainQueue, playerManager, makeSession)
    , refresh({*store, catalogue, appState, *defaults, network, *scheduler}, guideEnvironment()) {
    PlayerManager::setShared(&playerManager);
    QObject::connect(&playerManager, &PlayerManager::isPlayingChanged, &playerManager,
                     [this] { idleInhibitor->setInhibited(playerManager.isPlaying()); });
    if (outputs == MpvOutputs::Window) {
        showOnBus();
    }
}

void Services::showOnBus() {
    mpris.emplace(nowPlayingInfoCenter, remoteCommandCenter, sessionBus, folders.cache / "now-playing");
    QObject::connect(&playerManager, &PlayerManager::currentTimeChanged, &*mpris, [this] {
        // The end of an item is no way back to its beginning.
        if (playerManager.currentItem()) {
            mpris->follow(playerManager.currentTime());
        }
    });
    // Who shows it elsewhere counts on by itself, so that a length that came late and an end are news.
    for (const auto signal : {&PlayerManager::durationChanged, &PlayerManager::isPlayingChanged}) {
        QObject::connect(&playerManager, signal, &*mpris, [this] {
            if (playerManager.player()) {
                playerManager.updateNowPlayingInfo();
            }
        });
    }
}

/// A synchronisation may be under way: whatever writes to the store comes to rest before the store goes.
Services::~Services() {
    refresh.end();
    if (!endAllTransfers()) {
        AppLogger::network.error("transfers are left behind at the end");
    }
    QThreadPool::globalInstance()->waitForDone();
}

GuideEnvironment Services::guideEnvironment() {
    return {*store, makeSession, folders.cache, guideWorkers};
}

} // namespace ondavia
