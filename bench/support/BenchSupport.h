#pragma once

#include <QElapsedTimer>
#include <QProcess>
#include <QStringList>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace ondavia::bench {

/// What one side of a comparison took.
struct Measurement final {
    double seconds = 0;
    /// Highest resident memory during the work over what the process held before it, in MiB.
    double memory = 0;
    /// Longest time in which the main thread's event loop did not turn, in milliseconds.
    double stall = 0;
};

/// The demo provider as a process of its own, so that its work shows in no figure but the wall clock.
class ProviderProcess final {
public:
    /// Starts the program beside this one and waits until it listens. Raises std::runtime_error.
    explicit ProviderProcess(const QStringList& options);
    ~ProviderProcess();
    [[nodiscard]] const QString& url() const { return m_url; }

private:
    QProcess m_process;
    QString m_url;
};

/// Notes the longest time between two turns of the event loop while it lives.
class StallMeter final {
public:
    StallMeter();
    [[nodiscard]] double longestMilliseconds() const { return static_cast<double>(m_longest) / 1e6; }

private:
    QTimer m_timer;
    QElapsedTimer m_sinceTick;
    std::int64_t m_longest = 0;
};

/// What the process holds in memory now, in MiB.
[[nodiscard]] double residentMemory();

/// Runs `work` and measures it. Memory is measured from a reset of the process's high-water mark.
Measurement measure(const std::function<void()>& work);

/// Runs this program again with `arguments` and reads the three numbers that it prints: each side has a
/// process of its own, so that neither inherits the other's memory. Raises std::runtime_error when the child
/// fails.
std::vector<double> runChildForFigures(const QStringList& arguments);
/// The same for the measurement that is printed by `printForParent`.
Measurement runChild(const QStringList& arguments);
void printForParent(const Measurement& measurement);
/// When `runChild` started this process. Raises std::runtime_error when it did not.
std::chrono::steady_clock::time_point startOfChild();

/// The best of `rounds` runs of each side, taken in turns.
struct Comparison final {
    Measurement ours;
    Measurement bare;
    void print(const std::string& what) const;
};
Comparison compare(int rounds, const QStringList& ours, const QStringList& bare);

} // namespace ondavia::bench
