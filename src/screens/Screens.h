#pragma once

#include "screens/shell/ScreenServices.h"

#include <memory>

class QQmlEngine;
class QQuickItem;
class QQuickWindow;

namespace ondavia {

class PictureLoader;
class ScreenModels;

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
