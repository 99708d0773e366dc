#pragma once

#include <httplib.h>

#include <string>
#include <thread>

namespace ondavia::testing {

/// A real HTTP server on a free port of the loopback interface. Add handlers to `server`, then call
/// `start`; handlers must end soon after `server.stop()`.
class HttpServer final {
public:
    ~HttpServer() { stop(); }

    void start() {
        // An idle connection would hold up `stop` until its time-out.
        server.set_keep_alive_max_count(1);
        m_port = server.bind_to_any_port("127.0.0.1");
        m_thread = std::thread([this] { server.listen_after_bind(); });
        while (!server.is_running()) {
            std::this_thread::yield();
        }
    }
    void stop() {
        if (m_thread.joinable()) {
            server.stop();
            m_thread.join();
        }
    }
    [[nodiscard]] std::string url(const std::string& path = {}) const {
        return "http://127.0.0.1:" + std::to_string(m_port) + path;
    }

    httplib::Server server;

private:
    int m_port = 0;
    std::thread m_thread;
};

} // namespace ondavia::testing
