#pragma once

#include <QObject>

#include <exception>
#include <memory>
#include <string>

class QQmlEngine;
class QQuickWindow;

namespace ondavia {

/// A window that says why the application cannot start and what can be done about it. Main thread.
class FailureWindow final : public QObject {
    Q_OBJECT

public:
    /// Opens the window, with its texts in `language` as in `ScreenServices`. Raises std::runtime_error when
    /// that fails too.
    FailureWindow(const std::exception& error, const std::string& language);
    ~FailureWindow() override;

    [[nodiscard]] QQuickWindow& window() const { return *m_window; }
    /// Whether the user asked for another try, which closes the window.
    [[nodiscard]] bool wantsRetry() const { return m_wantsRetry; }

private:
    Q_SLOT void retry();

    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    bool m_wantsRetry = false;
};

} // namespace ondavia
