#pragma once

#include <list>
#include <memory>
#include <mutex>

namespace ondavia::demo {

/// The streams that are open, each with the connection that it goes to. A stream whose client has closed its
/// connection does not count, even before the thread that feeds it has noticed. Any thread.
class OpenStreams final {
public:
    /// A stream to the client at this port of the loopback interface. `port` is the server's own.
    [[nodiscard]] std::shared_ptr<void> open(int port, int clientPort);
    [[nodiscard]] int count() const;
    /// The highest count so far, refused streams included.
    [[nodiscard]] int most() const;

private:
    [[nodiscard]] int countNow() const;

    mutable std::mutex m_mutex;
    /// Descriptors.
    std::list<int> m_connections;
    int m_most = 0;
};

/// Wakes every thread that waits for a client of the server on this port.
void shutConnections(int port);

} // namespace ondavia::demo
