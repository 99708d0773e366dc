#pragma once

#include "platform/URLSession.h"

#include <QUrl>

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace ondavia::testing {

/// Answers every address with the same reply, or stands still until it is told to stop.
class ScriptedSession final : public URLSession {
public:
    QCoro::Task<URLResponse> data(QUrl /*url*/, std::vector<Header> /*headers*/) override {
        co_return URLResponse();
    }
    QCoro::Task<void> stream(QUrl /*url*/, std::shared_ptr<URLBodyReader> /*reader*/,
                             std::vector<Header> /*headers*/) override {
        co_return;
    }
    URLResponse fetch(const QUrl& url, std::size_t maximumBody, const std::atomic_bool& stop) override {
        {
            const std::lock_guard lock(m_mutex);
            asked.push_back(url.toEncoded().toStdString());
            bound = maximumBody;
        }
        ++underWay;
        while (neverAnswers && !stop) {
            std::this_thread::yield();
        }
        --underWay;
        if (neverAnswers || fails) {
            throw URLError(URLError::Kind::Unreachable, "no route");
        }
        return response;
    }

    URLResponse response;
    std::vector<std::string> asked;
    std::size_t bound = 0;
    bool fails = false;
    bool neverAnswers = false;
    std::atomic_int underWay = 0;

private:
    std::mutex m_mutex;
};

} // namespace ondavia::testing
