#include "base/AppLogger.h"

#include "base/Date.h"
#include "base/Redaction.h"
#include "base/VisibleText.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <mutex>

namespace ondavia {
namespace {

std::mutex sinkMutex;

/// Never destroyed: threads that outlast the process's patience at its end still log.
AppLogger::Sink& currentSink() {
    static auto* const sink = new AppLogger::Sink;
    return *sink;
}

std::string rendered(const LogArgument& argument, bool isPublic) {
    if (const auto* number = std::get_if<std::int64_t>(&argument.value())) {
        return std::to_string(*number);
    }
    const auto& text = std::get<std::string>(argument.value());
    return isPublic ? text : maskSecrets(text);
}

std::string format(std::string_view pattern, std::initializer_list<LogArgument> arguments) {
    constexpr std::string_view publicMark = "{public}";
    std::string line;
    const auto* next = arguments.begin();
    while (!pattern.empty()) {
        const auto percent = pattern.find('%');
        line += pattern.substr(0, percent);
        if (percent == std::string_view::npos) {
            break;
        }
        pattern.remove_prefix(percent + 1);
        const bool isPublic = pattern.starts_with(publicMark);
        if (isPublic) {
            pattern.remove_prefix(publicMark.size());
        }
        if (pattern.starts_with("ld")) {
            pattern.remove_prefix(2);
        } else if (!pattern.empty()) {
            pattern.remove_prefix(1);
        }
        if (next != arguments.end()) {
            line += rendered(*next++, isPublic);
        }
    }
    return line;
}

bool debugLinesWanted() {
    static const bool wanted = [] {
        const char* level = std::getenv("ONDAVIA_LOG");
        return level != nullptr && std::string_view(level) == "debug";
    }();
    return wanted;
}

void print(const LogRecord& record) {
    if (record.level == LogLevel::Debug && !debugLinesWanted()) {
        return;
    }
    const std::time_t now = std::chrono::system_clock::to_time_t(currentDate());
    std::tm parts{};
    localtime_r(&now, &parts);
    char clock[16] = {};
    std::strftime(clock, sizeof clock, "%H:%M:%S", &parts);
    std::string line = clock;
    line.append(" com.ondavia ").append(logCategoryName(record.category));
    line.append(record.level == LogLevel::Error ? " error: " : " debug: ").append(record.message);
    writeLine(stderr, line);
}

} // namespace

const Logger AppLogger::player{LogCategory::player};
const Logger AppLogger::network{LogCategory::network};
const Logger AppLogger::subtitle{LogCategory::subtitle};
const Logger AppLogger::keychain{LogCategory::keychain};
const Logger AppLogger::general{LogCategory::general};

void AppLogger::setSink(Sink sink) {
    const std::lock_guard lock(sinkMutex);
    currentSink() = std::move(sink);
}

std::string_view logCategoryName(LogCategory category) {
    switch (category) {
    case LogCategory::player:
        return "player";
    case LogCategory::network:
        return "network";
    case LogCategory::subtitle:
        return "subtitle";
    case LogCategory::keychain:
        return "keychain";
    case LogCategory::general:
        break;
    }
    return "general";
}

void Logger::error(std::string_view format, std::initializer_list<LogArgument> arguments) const {
    write(LogLevel::Error, format, arguments);
}

void Logger::debug(std::string_view format, std::initializer_list<LogArgument> arguments) const {
    write(LogLevel::Debug, format, arguments);
}

void Logger::write(LogLevel level, std::string_view pattern,
                   std::initializer_list<LogArgument> arguments) const {
    const LogRecord record{level, m_category, visibleText(format(pattern, arguments))};
    const std::lock_guard lock(sinkMutex);
    if (currentSink()) {
        currentSink()(record);
    } else {
        print(record);
    }
}

} // namespace ondavia
