#pragma once

#include "platform/URLSession.h"

#include <filesystem>
#include <functional>
#include <string>

class QQmlApplicationEngine;
class QQmlEngine;
class QQuickWindow;

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
    /// Begins to read from disk what drawing needs, and returns; empty to leave that to the window. Called
    /// when the pages are about to be made, which neither draws nor loads libraries, so that both go on at
    /// once.
    std::function<void()> readGraphicsDriver = {};
};

/// Makes the module `Ondavia`, which the screens are written in, known to `engine`. Main thread.
void provideScreens(QQmlEngine& engine);

/// Builds the view-models, which live as long as `engine`, makes the pages and opens the window, which is
/// the engine's. Null if that failed. Main thread.
QQuickWindow* loadScreens(QQmlApplicationEngine& engine, const ScreenServices& services);

} // namespace ondavia
