#include "platform/linux/CurlURLSession.h"

#include "platform/linux/CurlTransfer.h"

#include <QPromise>
#include <QUrl>
#include <qcoro/qcorofuture.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace ondavia {
namespace {

/// The threads of all running transfers. Never destroyed: one that outlives our patience at the end of the
/// process may still look here.
class TransferThreads final {
public:
    static TransferThreads& instance() {
        static auto* const threads = new TransferThreads;
        return *threads;
    }

    void start(std::function<void(const std::atomic_bool& stop)> work) {
        // Counted before it can end, under the lock; a thread that cannot be had is not counted.
        const std::lock_guard starting(m_mutex);
        std::thread([this, work = std::move(work)] {
            work(m_stop);
            const std::lock_guard lock(m_mutex);
            --m_running;
            m_ended.notify_all();
        }).detach();
        ++m_running;
    }

    void end() {
        m_stop = true;
        wait(std::chrono::seconds(3));
    }

    bool wait(std::chrono::milliseconds timeout) {
        std::unique_lock lock(m_mutex);
        return m_ended.wait_for(lock, timeout, [this] { return m_running == 0; });
    }

private:
    std::atomic_bool m_stop = false;
    std::mutex m_mutex;
    std::condition_variable m_ended;
    int m_running = 0;
};

/// Collects a whole body for `data`.
class CollectingReader final : public URLBodyReader {
public:
    void begin(std::optional<int> statusCode) override { response.statusCode = statusCode; }
    void receive(std::string_view bytes) override { response.body += bytes; }
    void finish() override {}

    URLResponse response;
};

class CurlURLSession final : public URLSession {
public:
    explicit CurlURLSession(const URLSessionConfiguration& configuration)
        : m_configuration(configuration) {}

    QCoro::Task<URLResponse> data(QUrl url, std::vector<Header> headers) override {
        auto reader = std::make_shared<CollectingReader>();
        co_await run(request(url, std::move(headers), maximumCollectedBody), reader);
        co_return std::move(reader->response);
    }

    URLResponse fetch(const QUrl& url, std::size_t maximumBody, const std::atomic_bool& stop) override {
        CollectingReader reader;
        performTransfer(request(url, {}, maximumBody), reader, stop);
        return std::move(reader.response);
    }

    QCoro::Task<void> stream(QUrl url, std::shared_ptr<URLBodyReader> reader) override {
        return run(request(url, {}, maximumStreamedBody), std::move(reader));
    }

private:
    [[nodiscard]] TransferRequest request(const QUrl& url, std::vector<Header> headers,
                                          std::size_t limit) const {
        return {url.toEncoded().toStdString(), std::move(headers), limit, m_configuration};
    }

    static QCoro::Task<void> run(TransferRequest request, std::shared_ptr<URLBodyReader> reader) {
        const auto promise = std::make_shared<QPromise<void>>();
        promise->start();
        TransferThreads::instance().start([request = std::move(request), reader, promise](const auto& stop) {
            try {
                performTransfer(request, *reader, stop);
            } catch (...) {
                // Whatever the transfer or its reader raises belongs to whoever awaits it.
                promise->setException(std::current_exception());
            }
            promise->finish();
        });
        co_await promise->future();
    }

    URLSessionConfiguration m_configuration;
};

} // namespace

void endAllTransfers() {
    TransferThreads::instance().end();
}

bool waitForTransfers(std::chrono::milliseconds timeout) {
    return TransferThreads::instance().wait(timeout);
}

std::shared_ptr<URLSession> makeCurlURLSession(const URLSessionConfiguration& configuration) {
    return std::make_shared<CurlURLSession>(configuration);
}

} // namespace ondavia
