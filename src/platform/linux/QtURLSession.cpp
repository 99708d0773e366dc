#include "platform/linux/QtURLSession.h"

#include "platform/linux/NetworkThread.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>
#include <QThreadPool>
#include <QTimer>
#include <QUrl>
#include <qcoro/qcorofuture.h>

#include <QPromise>
#include <atomic>

namespace ondavia {
namespace {

/// What one read takes from the socket's buffer at most, and what that buffer holds at most: so much can
/// lie between server and reader, twice.
constexpr qint64 readAhead = qint64{2} << 20;
constexpr int maximumRedirects = 16;
constexpr const char* errorDomain = "QNetworkReply";

/// One GET on the network thread. It hands what has arrived to the reader on a pool thread and reads on
/// when the reader is done with it: a slow reader slows the sender, and memory stays bounded.
class Transfer final : public QObject, public std::enable_shared_from_this<Transfer> {
    Q_OBJECT

public:
    Transfer(std::shared_ptr<URLBodyReader> reader, std::size_t limit)
        : m_reader(std::move(reader))
        , m_limit(limit) {
        m_promise.start();
    }

    [[nodiscard]] QFuture<void> future() { return m_promise.future(); }
    /// Any thread.
    void cancel() {
        m_cancelled = true;
        QMetaObject::invokeMethod(this, &Transfer::pump);
    }

    void start(QNetworkAccessManager& network, const QNetworkRequest& request, double resourceTimeout) {
        m_reply = network.get(request);
        m_reply->setReadBufferSize(readAhead);
        connect(m_reply, &QNetworkReply::readyRead, this, &Transfer::pump);
        connect(m_reply, &QNetworkReply::finished, this, &Transfer::pump);
        QTimer::singleShot(std::chrono::milliseconds(static_cast<qint64>(resourceTimeout * 1000)), this,
                           [this] {
                               fail(std::make_exception_ptr(URLError(QNetworkReply::TimeoutError, errorDomain,
                                                                     "The transfer took too long")));
                           });
    }

private:
    /// Network thread: decides the next step whenever something arrived or the reader became free.
    void pump() {
        if (m_done || m_readerBusy || m_reply == nullptr) {
            return;
        }
        if (m_cancelled) {
            fail(std::make_exception_ptr(
                URLError(QNetworkReply::OperationCanceledError, errorDomain, "Cancelled")));
            return;
        }
        const bool finished = m_reply->isFinished();
        QByteArray bytes = m_reply->read(readAhead);
        m_received += static_cast<std::size_t>(bytes.size());
        if (m_received > m_limit) {
            fail(std::make_exception_ptr(
                URLError(QNetworkReply::UnknownContentError, errorDomain,
                         "The reply is longer than " + std::to_string(m_limit) + " bytes")));
            return;
        }
        if (!bytes.isEmpty()) {
            handOver(std::move(bytes), Last::No);
        } else if (finished) {
            finishBody();
        }
    }

    void finishBody() {
        if (transportFailed()) {
            fail(std::make_exception_ptr(
                URLError(m_reply->error(), errorDomain, m_reply->errorString().toStdString())));
        } else {
            handOver({}, Last::Yes);
        }
    }

    enum class Last { No, Yes };

    void handOver(QByteArray bytes, Last last) {
        m_readerBusy = true;
        const auto status = m_began ? std::nullopt : statusCode();
        const bool begin = !std::exchange(m_began, true);
        QThreadPool::globalInstance()->start(
            [self = shared_from_this(), bytes = std::move(bytes), last, status, begin] {
                std::exception_ptr error;
                try {
                    if (begin) {
                        self->m_reader->begin(status);
                    }
                    if (!bytes.isEmpty()) {
                        self->m_reader->receive({bytes.constData(), static_cast<std::size_t>(bytes.size())});
                    }
                    if (last == Last::Yes) {
                        self->m_reader->finish();
                    }
                } catch (...) {
                    // Whatever the reader raises belongs to whoever awaits the transfer.
                    error = std::current_exception();
                }
                QMetaObject::invokeMethod(self.get(), [self, error, last] { self->readerDone(error, last); });
            });
    }

    void readerDone(const std::exception_ptr& error, Last last) {
        m_readerBusy = false;
        if (m_done) {
            // Failed meanwhile: whoever awaits was told only now that the reader is at rest.
            settle();
        } else if (error) {
            fail(error);
        } else if (last == Last::Yes) {
            end();
        } else {
            pump();
        }
    }

    /// An HTTP error status is an answer, not a failure of the transport.
    [[nodiscard]] bool transportFailed() const {
        return m_reply->error() != QNetworkReply::NoError && statusCode().value_or(0) < 400;
    }

    [[nodiscard]] std::optional<int> statusCode() const {
        const QVariant status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
        return status.isValid() ? std::optional(status.toInt()) : std::nullopt;
    }

    void fail(std::exception_ptr error) {
        if (!m_done) {
            m_error = std::move(error);
            end();
        }
    }

    void end() {
        m_done = true;
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
        if (!m_readerBusy) {
            settle();
        }
    }

    void settle() {
        if (m_error) {
            m_promise.setException(m_error);
        }
        m_promise.finish();
    }

    std::shared_ptr<URLBodyReader> m_reader;
    std::size_t m_limit;
    QPromise<void> m_promise;
    std::exception_ptr m_error;
    QNetworkReply* m_reply = nullptr;
    std::size_t m_received = 0;
    bool m_readerBusy = false;
    bool m_began = false;
    bool m_done = false;
    std::atomic_bool m_cancelled = false;
};

/// Collects a whole body for `data`.
class CollectingReader final : public URLBodyReader {
public:
    void begin(std::optional<int> statusCode) override { response.statusCode = statusCode; }
    void receive(std::string_view bytes) override { response.body += bytes; }
    void finish() override {}

    URLResponse response;
};

QNetworkRequest makeRequest(const QUrl& url, double requestTimeout) {
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setMaximumRedirectsAllowed(maximumRedirects);
    // Lists of repetitive rows compress far better than Qt expects of honest servers; the bound on the
    // inflated body is ours.
    request.setDecompressedSafetyCheckThreshold(-1);
    request.setTransferTimeout(static_cast<int>(requestTimeout * 1000));
    return request;
}

class QtURLSession final : public URLSession {
public:
    explicit QtURLSession(const URLSessionConfiguration& configuration)
        : m_configuration(configuration) {}

    QCoro::Task<URLResponse> data(QUrl url, std::vector<Header> headers) override {
        auto reader = std::make_shared<CollectingReader>();
        co_await transfer(std::move(url), std::move(headers), reader, maximumCollectedBody, m_configuration);
        co_return std::move(reader->response);
    }

    QCoro::Task<void> stream(QUrl url, std::shared_ptr<URLBodyReader> reader) override {
        return transfer(std::move(url), {}, std::move(reader), maximumStreamedBody, m_configuration);
    }

private:
    /// Cancels the transfer when the awaiting coroutine goes away.
    struct CancelOnExit final {
        std::shared_ptr<Transfer> transfer;
        ~CancelOnExit() { transfer->cancel(); }
    };

    static QCoro::Task<void> transfer(QUrl url, std::vector<Header> headers,
                                      std::shared_ptr<URLBodyReader> reader, std::size_t limit,
                                      URLSessionConfiguration configuration) {
        QNetworkRequest request = makeRequest(url, configuration.requestTimeout);
        for (const auto& [name, value] : headers) {
            request.setRawHeader(QByteArray::fromStdString(name), QByteArray::fromStdString(value));
        }
        // The last to let go may be any thread; the object dies on its own.
        const std::shared_ptr<Transfer> running(new Transfer(std::move(reader), limit),
                                                [](Transfer* done) { done->deleteLater(); });
        NetworkThread& thread = NetworkThread::instance();
        running->moveToThread(thread.thread());
        const CancelOnExit guard{running};
        thread.run([running, request, configuration](QNetworkAccessManager& network) {
            running->start(network, request, configuration.resourceTimeout);
        });
        co_await running->future();
    }

    URLSessionConfiguration m_configuration;
};

} // namespace

std::shared_ptr<URLSession> makeQtURLSession(const URLSessionConfiguration& configuration) {
    return std::make_shared<QtURLSession>(configuration);
}

} // namespace ondavia

#include "QtURLSession.moc"
