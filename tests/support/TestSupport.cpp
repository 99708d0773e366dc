#include "support/TestSupport.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

namespace ondavia::testing {

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
    const QDeadlineTimer deadline(timeout);
    // Wakes the loop up for conditions that change without an event of this thread.
    QTimer heartbeat;
    heartbeat.start(5);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

void drainEvents() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

LogCapture::LogCapture() {
    AppLogger::setSink([this](const LogRecord& record) {
        const std::lock_guard lock(m_mutex);
        m_records.push_back(record);
    });
}

LogCapture::~LogCapture() {
    AppLogger::setSink({});
}

std::vector<LogRecord> LogCapture::records() const {
    const std::lock_guard lock(m_mutex);
    return m_records;
}

std::vector<std::string> LogCapture::messages(LogCategory category, LogLevel level) const {
    std::vector<std::string> found;
    for (const auto& record : records()) {
        if (record.category == category && record.level == level) {
            found.push_back(record.message);
        }
    }
    return found;
}

std::string LogCapture::text() const {
    std::string lines;
    for (const auto& record : records()) {
        lines += record.message + "\n";
    }
    return lines;
}

} // namespace ondavia::testing
