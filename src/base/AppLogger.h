#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

namespace ondavia {

enum class LogLevel { Debug, Error };
enum class LogCategory { player, network, subtitle, keychain, general };

/// One line on its way out, with every secret masked and no control character in it.
struct LogRecord final {
    LogLevel level;
    LogCategory category;
    std::string message;
};

/// A value to be printed: numbers as they are, texts by the rule of their place in the format.
class LogArgument final {
public:
    LogArgument(std::integral auto number)
        : m_value(static_cast<std::int64_t>(number)) {}
    LogArgument(std::string_view text)
        : m_value(std::string(text)) {}
    LogArgument(const std::string& text)
        : m_value(text) {}
    LogArgument(const char* text)
        : m_value(std::string(text)) {}

    [[nodiscard]] const std::variant<std::int64_t, std::string>& value() const { return m_value; }

private:
    std::variant<std::int64_t, std::string> m_value;
};

/// The logger of one category under the subsystem "com.ondavia".
///
/// A format holds `%s`, `%d` and `%ld`. A text is private unless its place says `%{public}s`: private
/// texts go through `maskSecrets`, since they may carry a media URL or a credential; a public one is
/// printed as it stands, on the word of the line's author. Line ends and other control characters are
/// written out, so that one call is one line. May be called from any thread.
class Logger final {
public:
    explicit Logger(LogCategory category)
        : m_category(category) {}

    /// For failures.
    void error(std::string_view format, std::initializer_list<LogArgument> arguments = {}) const;
    /// For diagnostics. Printed only when ONDAVIA_LOG is "debug".
    void debug(std::string_view format, std::initializer_list<LogArgument> arguments = {}) const;

private:
    void write(LogLevel level, std::string_view format, std::initializer_list<LogArgument> arguments) const;

    LogCategory m_category;
};

/// The five loggers of the process.
struct AppLogger final {
    static const Logger player;
    static const Logger network;
    static const Logger subtitle;
    static const Logger keychain;
    static const Logger general;

    using Sink = std::function<void(const LogRecord&)>;
    /// Sends every line of both levels to `sink` instead of standard error; an empty sink restores it.
    /// The sink runs on the thread that logs, one call at a time.
    static void setSink(Sink sink);
};

[[nodiscard]] std::string_view logCategoryName(LogCategory category);

} // namespace ondavia
