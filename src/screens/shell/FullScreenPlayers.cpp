#include "screens/shell/FullScreenPlayers.h"

#include "library/LibraryRefresh.h"
#include "screens/liveplayer/LivePlayerViewModel.h"
#include "screens/player/PlayerViewModel.h"
#include "state/AppState.h"
#include "store/LibraryStore.h"

namespace ondavia {
namespace {

PlayerScreenServices playerServices(const ScreenServices& services) {
    return {.appState = services.appState,
            .modelContext = services.store.mainContext(),
            .playerManager = services.playerManager,
            .scheduler = services.scheduler,
            .audioSession = services.audioSession,
            .systemVolume = services.systemVolume,
            .screenBrightness = services.screenBrightness};
}

LivePlayerServices livePlayerServices(const ScreenServices& services) {
    return {.player = playerServices(services),
            .remoteCommands = services.remoteCommands,
            .defaults = services.defaults,
            .guide = EPGService(services.guide),
            .loadGuide = [&refresh = services.refresh](std::shared_ptr<XtreamAPIClient> client) {
                return refresh.loadGuide(std::move(client));
            }};
}

} // namespace

FullScreenPlayers::FullScreenPlayers(const ScreenServices& services)
    : m_services(services) {
    // Their addresses hold the password of the account of before.
    connect(&services.appState, &AppState::accountChanged, this,
            [this] { m_cachedLiveChannels = std::make_shared<LiveChannels>(); });
}

std::shared_ptr<const LiveChannels> FullScreenPlayers::fetchLiveChannels() {
    return std::make_shared<LiveChannels>(LiveChannels::fetch(m_services.store.mainContext()));
}

std::unique_ptr<PlayerScreen> FullScreenPlayers::make(const Channel& item) {
    if (item.type != "live") {
        return std::make_unique<PlayerViewModel>(playerServices(m_services), item);
    }
    if (m_cachedLiveChannels->isEmpty()) {
        m_cachedLiveChannels = fetchLiveChannels();
    }
    return std::make_unique<LivePlayerViewModel>(livePlayerServices(m_services), item, m_cachedLiveChannels);
}

} // namespace ondavia
