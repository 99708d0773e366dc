#pragma once

namespace ondavia {

class AppState;
class AVAudioSession;
class PlayerManager;
class Scheduler;
class ScreenBrightness;
class StoreContext;
class SystemVolumeHelper;

/// What the player screens work with. All of it must outlive them; the store's context also the manager's
/// playback, which goes on being recorded when its screen has gone.
struct PlayerScreenServices final {
    AppState& appState;
    StoreContext& modelContext;
    PlayerManager& playerManager;
    Scheduler& scheduler;
    AVAudioSession& audioSession;
    SystemVolumeHelper& systemVolume;
    ScreenBrightness& screenBrightness;
};

} // namespace ondavia
