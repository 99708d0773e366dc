#pragma once

#include <QNetworkAccessManager>
#include <QThread>

#include <functional>

namespace ondavia {

/// The one thread that serves the sockets of all sessions, so that neither a busy main thread slows a
/// download nor a download the main thread. Started at first use, ended with the process.
class NetworkThread final {
public:
    static NetworkThread& instance();

    [[nodiscard]] QThread* thread() { return &m_thread; }
    /// Runs `work` on the thread. May be called from any thread.
    void run(std::function<void(QNetworkAccessManager&)> work);

private:
    NetworkThread();
    ~NetworkThread();

    QThread m_thread;
    QNetworkAccessManager* m_network;
};

} // namespace ondavia
