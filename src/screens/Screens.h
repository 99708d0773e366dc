#pragma once

#include "platform/URLSession.h"

#include <filesystem>
#include <string>

class QQmlApplicationEngine;
class QQmlEngine;

namespace ondavia {

class AppState;
class CatalogueSummary;
class ContentViewModel;
class KeychainService;
class LibraryStore;
class PlayerManager;
class Scheduler;
class UserDefaults;

/// What the screens work with. All of it must outlive the engine.
struct ScreenServices final {
    AppState& appState;
    LibraryStore& store;
    CatalogueSummary& catalogue;
    PlayerManager& playerManager;
    UserDefaults& defaults;
    KeychainService& keychain;
    URLSessionFactory makeSession;
    Scheduler& scheduler;
    ContentViewModel& content;
    /// Where pictures are kept; may be emptied at any time.
    std::filesystem::path cacheFolder;
    /// Language code of the texts; empty for the user's own.
    std::string language;
};

/// Makes the module `Ondavia`, which the screens are written in, known to `engine`. Main thread.
void provideScreens(QQmlEngine& engine);

/// Builds the view-models, which live as long as `engine`, and opens the window. `engine` has no root
/// object afterwards if that failed. Main thread.
void loadScreens(QQmlApplicationEngine& engine, const ScreenServices& services);

} // namespace ondavia
