#pragma once

#include "support/TestAuthority.h"

#include <httplib.h>

#include <latch>
#include <memory>
#include <string>
#include <thread>

namespace ondavia::testing {

/// A real HTTP server on a free port of the loopback interface, over TLS where it is given a certificate.
/// Add handlers to `server`, then call `start`; handlers must end soon after `server.stop()`.
class HttpServer final {
public:
    HttpServer()
        : HttpServer(std::make_unique<httplib::Server>(), "http://127.0.0.1:") {}
    explicit HttpServer(const ServerCertificate& certificate)
        : HttpServer(
              std::make_unique<httplib::SSLServer>(certificate.certificate.c_str(), certificate.key.c_str()),
              "https://127.0.0.1:") {}
    ~HttpServer() { stop(); }

    void start() {
        // An idle connection would hold up `stop` until its time-out.
        server.set_keep_alive_max_count(1);
        m_port = server.bind_to_any_port("127.0.0.1");
        // The library says that it runs before it has the threads that answer.
        server.new_task_queue = [this] {
            auto* queue = new httplib::ThreadPool(CPPHTTPLIB_THREAD_POOL_COUNT);
            m_answers.count_down();
            return queue;
        };
        m_thread = std::thread([this] { server.listen_after_bind(); });
        m_answers.wait();
    }
    void stop() {
        if (m_thread.joinable()) {
            server.stop();
            m_thread.join();
        }
    }
    [[nodiscard]] std::string url(const std::string& path = {}) const {
        return m_start + std::to_string(m_port) + path;
    }

private:
    HttpServer(std::unique_ptr<httplib::Server> owned, const char* start)
        : m_owned(std::move(owned))
        , m_start(start)
        , server(*m_owned) {}

    std::unique_ptr<httplib::Server> m_owned;
    std::string m_start;
    int m_port = 0;
    std::latch m_answers{1};
    std::thread m_thread;

public:
    httplib::Server& server;
};

} // namespace ondavia::testing
