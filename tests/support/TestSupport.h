#pragma once

#include "base/AppLogger.h"

#include <QTemporaryDir>
#include <QThread>
#include <qcoro/qcorotask.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace ondavia::testing {

/// Runs the event loop until `condition` holds; false when it does not within `timeout`.
bool waitUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds timeout = std::chrono::seconds(20));

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
