#pragma once

#include "support/HttpServer.h"

#include <algorithm>
#include <future>
#include <mutex>
#include <string>
#include <vector>

namespace ondavia::testing {

/// A provider that answers every question with the same reply, at once or when it is told to.
class DetailProvider final {
public:
    DetailProvider() {
        m_server.server.Get("/player_api.php",
                            [this](const httplib::Request& request, httplib::Response& response) {
                                const auto answer = note(request);
                                answer.wait.wait();
                                response.status = answer.status;
                                response.set_content(answer.body, "application/json");
                            });
        m_server.start();
    }
    ~DetailProvider() { letGo(); }

    [[nodiscard]] std::string url() const { return m_server.url(); }
    void answer(std::string body, int status = 200) {
        const std::lock_guard lock(m_mutex);
        m_body = std::move(body);
        m_status = status;
    }
    /// From now on nothing is answered until `letGo`.
    void hold() {
        const std::lock_guard lock(m_mutex);
        m_gate = {};
        m_open = m_gate.get_future().share();
        m_isHeld = true;
    }
    void letGo() {
        const std::lock_guard lock(m_mutex);
        if (m_isHeld) {
            m_gate.set_value();
            m_isHeld = false;
        }
    }
    /// Actions, each with the id that it asks for.
    [[nodiscard]] std::vector<std::string> asked() {
        const std::lock_guard lock(m_mutex);
        return m_asked;
    }
    [[nodiscard]] long count(const std::string& question) { return std::ranges::count(asked(), question); }

private:
    struct Answer final {
        std::string body;
        int status;
        std::shared_future<void> wait;
    };

    Answer note(const httplib::Request& request) {
        const std::lock_guard lock(m_mutex);
        const std::string action = request.get_param_value("action");
        m_asked.push_back(action + " " +
                          request.get_param_value(action == "get_vod_info" ? "vod_id" : "series_id"));
        return {m_body, m_status, m_isHeld ? m_open : m_always};
    }
    static std::shared_future<void> opened() {
        std::promise<void> promise;
        promise.set_value();
        return promise.get_future().share();
    }

    std::mutex m_mutex;
    std::string m_body = "{}";
    int m_status = 200;
    std::vector<std::string> m_asked;
    bool m_isHeld = false;
    std::promise<void> m_gate;
    std::shared_future<void> m_open;
    std::shared_future<void> m_always = opened();
    /// Goes first: its threads use the rest.
    HttpServer m_server;
};

} // namespace ondavia::testing
