#pragma once

#include "guide/EPGService.h"
#include "platform/URLSession.h"

#include <filesystem>
#include <functional>
#include <string>

namespace ondavia {

class AVAudioSession;
class AppState;
class CatalogueSearch;
class CatalogueSummary;
class ContentViewModel;
class KeychainService;
class LibraryRefresh;
class LibraryStore;
class MPRemoteCommandCenter;
class PlayerManager;
class Scheduler;
class ScreenBrightness;
class SystemVolumeHelper;
class UserDefaults;

/// What the screens work with. All of it must outlive them.
struct ScreenServices final {
    AppState& appState;
    LibraryStore& store;
    CatalogueSummary& catalogue;
    CatalogueSearch& search;
    PlayerManager& playerManager;
    AVAudioSession& audioSession;
    SystemVolumeHelper& systemVolume;
    ScreenBrightness& screenBrightness;
    MPRemoteCommandCenter& remoteCommands;
    UserDefaults& defaults;
    KeychainService& keychain;
    URLSessionFactory makeSession;
    Scheduler& scheduler;
    LibraryRefresh& refresh;
    GuideEnvironment guide;
    ContentViewModel& content;
    /// Where pictures are kept; may be emptied at any time.
    std::filesystem::path cacheFolder;
    /// Language code of the texts; empty for the user's own.
    std::string language;
    /// Begins to read from disk what drawing needs, and returns; empty to leave that to the window. Called
    /// when the pages are about to be made, which neither draws nor loads libraries, so that both go on at
    /// once.
    std::function<void()> readGraphicsDriver = {};
    /// Called when the window is about to be made: the last moment to say how windows are drawn. May be
    /// empty.
    std::function<void()> chooseDrawing = {};
};

} // namespace ondavia
