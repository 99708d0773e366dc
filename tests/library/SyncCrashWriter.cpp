#include "library/CatalogueSummary.h"
#include "library/DataSyncService.h"
#include "library/NetworkMonitor.h"
#include "platform/AVAudioSession.h"
#include "platform/linux/CurlURLSession.h"
#include "platform/linux/JsonUserDefaults.h"
#include "platform/linux/QtPathMonitor.h"
#include "platform/linux/QtScheduler.h"
#include "platform/linux/SecItemStores.h"
#include "playback/PlayerManager.h"
#include "state/AppState.h"
#include "state/KeychainQueue.h"
#include "store/LibraryStore.h"
#include "support/AcknowledgedLog.h"

#include <QCoreApplication>

#include <unistd.h>

#include <string>
#include <string_view>

// A process to be killed in the middle of its writes.
//
//   sync_crash_writer sync FOLDER URL      synchronises again and again, by turns as the users "even" and
//                                          "odd"
//   sync_crash_writer personal FOLDER LOG  saves a favourite and a history row by turns, and writes the
//                                          channel id of each into LOG once its save has returned

namespace {

using namespace ondavia;

class SilentAudioSession final : public AVAudioSession {
public:
    bool setCategory(std::string_view, std::string_view) override { return true; }
    bool setActive(bool) override { return true; }
    float outputVolume() const override { return 1.0F; }
};

QCoro::Task<void> synchroniseForEver(SyncEnvironment environment, std::string url) {
    for (int round = 0;; ++round) {
        environment.appState.saveCredentials(url, round % 2 == 0 ? "even" : "odd", "word");
        DataSyncService service(environment.appState.makeXtreamClient(), environment);
        const std::stop_token neverStopped;
        co_await service.syncAll(neverStopped);
    }
}

int runSynchronisations(const QCoreApplication& application, LibraryStore& store, const std::string& folder,
                        const std::string& url) {
    JsonUserDefaults defaults(folder + "/settings.json");
    const auto items = makeMemoryStore();
    const auto scheduler = makeQtScheduler();
    NotificationCenter notifications;
    SilentAudioSession audio;
    MPNowPlayingInfoCenter nowPlaying;
    MPRemoteCommandCenter commands;
    PlayerManager playerManager({{}, notifications, *scheduler, audio, {}, nowPlaying, commands});
    KeychainService keychain(*items, defaults);
    KeychainQueue keychainQueue(keychain, *scheduler);
    AppState appState(keychainQueue, playerManager, makeCurlURLSession);
    const NetworkMonitor network(makeQtPathMonitor());
    CatalogueSummary catalogue(store);
    const auto running = synchroniseForEver({store, catalogue, appState, defaults, network, *scheduler}, url);
    return application.exec();
}

[[noreturn]] void recordForEver(LibraryStore& store, const char* logFile) {
    const testing::AcknowledgedLog log(logFile);
    const std::string prefix = std::to_string(::getpid()) + "-";
    for (std::int64_t number = 1;; ++number) {
        const std::string id = prefix + std::to_string(number);
        if (number % 2 == 0) {
            store.mainContext().insert(Favorite("main", id));
        } else {
            store.mainContext().insert(WatchHistory("main", id, 30, 60, "movie"));
        }
        store.mainContext().save();
        log.append(id);
    }
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    if (argc != 4) {
        return 2;
    }
    const auto store = LibraryStore::open(std::string(argv[2]) + "/store");
    if (std::string_view(argv[1]) == "sync") {
        return runSynchronisations(application, *store, argv[2], argv[3]);
    }
    recordForEver(*store, argv[3]);
}
