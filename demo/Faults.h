#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace ondavia::demo {

struct FaultDescription final {
    std::string_view name;
    std::string_view effect;
};

/// What one request suffers.
class ActiveFaults final {
public:
    explicit ActiveFaults(std::vector<std::string> names)
        : m_names(std::move(names)) {}

    [[nodiscard]] bool has(std::string_view name) const;
    /// The code of a "status-" fault, 503 for a failing first request, 0 for neither.
    [[nodiscard]] int status() const;

private:
    std::vector<std::string> m_names;
};

/// The misbehaviour that is switched on. A fault is written NAME or NAME:ACTION. May be used from any thread.
class Faults final {
public:
    static std::span<const FaultDescription> known();
    static std::span<const std::string_view> actions();

    /// Adds one fault or several, separated by commas. Throws std::invalid_argument for an unknown name or
    /// action; then none is added.
    void set(std::string_view list);
    void clear();

    /// The faults of one request of `action`. Counts it, for "fail-first-N".
    [[nodiscard]] ActiveFaults take(std::string_view action);

    /// Waits until the faults change or `stop` is requested.
    void waitForChange(const std::stop_token& stop);

private:
    struct Entry final {
        std::string name;
        std::string action;
        std::size_t failuresLeft = 0;
    };
    static Entry parse(std::string_view text);

    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::vector<Entry> m_entries;
    std::size_t m_generation = 0;
};

} // namespace ondavia::demo
