#pragma once

#include <list>
#include <memory>
#include <mutex>
#include <string>

namespace ondavia::demo {

/// The streams that are open, each with the connection that it goes to. A stream whose client has closed its
/// connection does not count, even before the thread that feeds it has noticed. Any thread.
class OpenStreams final {
public:
    /// The stream of this path to the client at this port of the loopback interface. `port` is the server's
    /// own.
    [[nodiscard]] std::shared_ptr<void> open(int port, int clientPort, const std::string& path);
    [[nodiscard]] int count() const;
    /// The highest count so far, refused streams included.
    [[nodiscard]] int most() const;

    /// What was asked for last, refused or not; empty for nothing.
    [[nodiscard]] std::string lastPath() const;

private:
    [[nodiscard]] int countNow() const;

    mutable std::mutex m_mutex;
    /// Descriptors.
    std::list<int> m_connections;
    int m_most = 0;
    std::string m_lastPath;
};

/// Wakes every thread that waits for a client of the server on this port.
void shutConnections(int port);

} // namespace ondavia::demo
