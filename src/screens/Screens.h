#pragma once

#include "platform/URLSession.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

class QQmlEngine;
class QQuickItem;
class QQuickWindow;

namespace ondavia {

class AppState;
class CatalogueSummary;
class ContentViewModel;
class KeychainService;
class LibraryStore;
class PictureLoader;
class PlayerManager;
class Scheduler;
class ScreenModels;
class UserDefaults;

/// What the screens work with. All of it must outlive them.
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

/// The view-models, the pages and the window that shows them. Main thread.
class Screens final {
public:
    /// Opens the window. Raises std::runtime_error when that fails.
    explicit Screens(const ScreenServices& services);
    ~Screens();
    Screens(const Screens&) = delete;
    Screens& operator=(const Screens&) = delete;

    [[nodiscard]] QQuickWindow& window() const { return *m_window; }
    [[nodiscard]] ScreenModels& models() const { return *m_models; }

private:
    std::shared_ptr<PictureLoader> m_pictures;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<ScreenModels> m_models;
    std::unique_ptr<QQuickWindow> m_window;
    /// Goes before its window.
    std::unique_ptr<QQuickItem> m_page;
};

} // namespace ondavia
