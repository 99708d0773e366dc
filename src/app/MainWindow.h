#pragma once

#include "screens/shell/ContentViewModel.h"

#include <QQmlApplicationEngine>

class QQuickWindow;

namespace ondavia {

class Services;

/// The screens over their services, in the one window. Main thread; `services` must outlive it.
class MainWindow final {
public:
    /// `language` is the code of the texts' language, empty for the user's own. Raises std::runtime_error
    /// when the window cannot be opened.
    MainWindow(Services& services, const std::string& language);

    [[nodiscard]] QQuickWindow& window() const { return *m_window; }

private:
    ContentViewModel m_content;
    QQmlApplicationEngine m_engine;
    QQuickWindow* m_window = nullptr;
};

} // namespace ondavia
