#include "platform/linux/CurlURLSession.h"

#include "platform/CountedThreads.h"
#include "platform/linux/CurlTransfer.h"

#include <QUrl>
#include <qcoro/qcorofuture.h>

#include <system_error>

namespace ondavia {
namespace {

/// Those of all running transfers. Never destroyed, since that would wait for the last of them.
CountedThreads& transferThreads() {
    static auto* const threads = new CountedThreads;
    return *threads;
}

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
        performTransfer(request(url, {}, maximumBody), reader, [&stop] { return stop.load(); });
        return std::move(reader.response);
    }

    QCoro::Task<void> stream(QUrl url, std::shared_ptr<URLBodyReader> reader,
                             std::vector<Header> headers) override {
        return run(request(url, std::move(headers), maximumStreamedBody), std::move(reader));
    }

private:
    [[nodiscard]] TransferRequest request(const QUrl& url, std::vector<Header> headers,
                                          std::size_t limit) const {
        return {url.toEncoded().toStdString(), std::move(headers), limit, m_configuration};
    }

    static QCoro::Task<void> run(TransferRequest request, std::shared_ptr<URLBodyReader> reader) {
        const QFuture<void> ended = start(std::move(request), std::move(reader));
        co_await ended;
    }

    /// A machine that has no thread left counts as one without a network.
    static QFuture<void> start(TransferRequest request, std::shared_ptr<URLBodyReader> reader) {
        try {
            return transferThreads().run(
                [request = std::move(request), reader = std::move(reader)](const std::stop_token& stop) {
                    performTransfer(request, *reader, [&stop] { return stop.stop_requested(); });
                });
        } catch (const std::system_error& error) {
            throw URLError(URLError::Kind::Other, std::string("No thread for the transfer: ") + error.what());
        }
    }

    URLSessionConfiguration m_configuration;
};

} // namespace

bool endAllTransfers() {
    transferThreads().requestStop();
    return waitForTransfers(std::chrono::seconds(3));
}

bool waitForTransfers(std::chrono::milliseconds timeout) {
    return transferThreads().wait(timeout);
}

std::shared_ptr<URLSession> makeCurlURLSession(const URLSessionConfiguration& configuration) {
    return std::make_shared<CurlURLSession>(configuration);
}

} // namespace ondavia
