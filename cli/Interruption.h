#pragma once

#include <memory>

class QSocketNotifier;

namespace ondavia::cli {

/// SIGINT or SIGTERM came.
struct Interrupted final {
    int signal;
};

/// Ctrl-C and SIGTERM as something to wait for. Made before the process has a second thread, so that no
/// thread is ever struck by the signals.
class Interruption final {
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Readable when a signal has come.
    [[nodiscard]] int descriptor() const { return m_descriptor; }
    /// The signal that has come.
    [[nodiscard]] int take() const;

    /// From now on a signal ends the process with 128 and its number. Needs an event loop.
    void endProcess();

private:
    int m_descriptor;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace ondavia::cli
