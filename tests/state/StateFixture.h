#pragma once

#include "platform/linux/CurlURLSession.h"
#include "platform/linux/JsonUserDefaults.h"
#include "platform/linux/SecItemStores.h"
#include "playback/PlayerManagerFixture.h"
#include "state/AppState.h"
#include "state/KeychainQueue.h"

namespace ondavia::testing {

/// Settings in a fresh folder, secrets in memory, a manager among fakes.
class StateFixture : public PlayerManagerTest {
protected:
    /// A state as the application makes it at its start.
    [[nodiscard]] std::unique_ptr<AppState> startState() {
        return std::make_unique<AppState>(keychainQueue, *manager, makeCurlURLSession);
    }

    TemporaryFolder folder;
    JsonUserDefaults defaults{folder.path() / "settings.json"};
    std::unique_ptr<SecItemStore> items = makeMemoryStore();
    KeychainService keychain{*items, defaults};
    KeychainQueue keychainQueue{keychain, scheduler};
};

} // namespace ondavia::testing
