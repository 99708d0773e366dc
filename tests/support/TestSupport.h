#pragma once

#include "base/AppLogger.h"

#include <QTemporaryDir>
#include <QThread>
#include <qcoro/qcorotask.h>

#include <chrono>
#include <exception>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace ondavia::testing {

/// Runs the event loop until `condition` holds; false when it does not within `timeout`.
bool waitUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds timeout = std::chrono::minutes(2));

/// Runs the event loop until `task` has ended, and returns its result or raises its error. (QCoro's own
/// waitFor never returns from a task that raises.)
template<class T> T resultOf(QCoro::Task<T> task) {
    bool ended = false;
    std::exception_ptr error;
    std::conditional_t<std::is_void_v<T>, std::monostate, std::optional<T>> result;
    const auto watch = [&]() -> QCoro::Task<void> {
        try {
            if constexpr (std::is_void_v<T>) {
                co_await task;
            } else {
                result = co_await task;
            }
        } catch (...) {
            error = std::current_exception();
        }
        ended = true;
    };
    const auto watching = watch();
    if (!waitUntil([&] { return ended; }, std::chrono::minutes(2))) {
        throw std::runtime_error("the task did not end");
    }
    if (error) {
        std::rethrow_exception(error);
    }
    if constexpr (!std::is_void_v<T>) {
        return std::move(*result);
    }
}

/// Runs every event that is due now.
void drainEvents();

/// A fresh folder, removed with the object.
class TemporaryFolder final {
public:
    [[nodiscard]] std::filesystem::path path() const {
        return std::filesystem::path(m_folder.path().toStdString());
    }

private:
    QTemporaryDir m_folder;
};

/// Collects what is logged while it lives.
class LogCapture final {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    [[nodiscard]] std::vector<LogRecord> records() const;
    /// The messages of one category and level, in order.
    [[nodiscard]] std::vector<std::string> messages(LogCategory category, LogLevel level) const;
    /// Everything, a line each, for "this text never shows up".
    [[nodiscard]] std::string text() const;

private:
    mutable std::mutex m_mutex;
    std::vector<LogRecord> m_records;
};

} // namespace ondavia::testing
