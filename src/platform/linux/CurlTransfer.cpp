#include "platform/linux/CurlTransfer.h"

#include <chrono>
#include <curl/curl.h>
#include <memory>

namespace ondavia {
namespace {

constexpr long maximumRedirects = 16;
/// What one read takes from the socket at most.
constexpr long readSize = 256L << 10;

using Clock = std::chrono::steady_clock;

URLError::Kind kindOf(CURLcode code) {
    using Kind = URLError::Kind;
    switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
        return Kind::UnknownHost;
    case CURLE_COULDNT_CONNECT:
        return Kind::Unreachable;
    case CURLE_OPERATION_TIMEDOUT:
        return Kind::TimedOut;
    case CURLE_SSL_CONNECT_ERROR:
        return Kind::NoEncryption;
    case CURLE_PEER_FAILED_VERIFICATION:
        return Kind::Untrusted;
    case CURLE_GOT_NOTHING:
        return Kind::NoReply;
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
        return Kind::BrokenOff;
    case CURLE_PARTIAL_FILE:
        return Kind::Cut;
    case CURLE_TOO_MANY_REDIRECTS:
        return Kind::TooManyRedirects;
    default:
        return Kind::Other;
    }
}

URLError errorOf(CURLcode code) {
    return {kindOf(code), curl_easy_strerror(code)};
}

/// One for each thread, since it keeps the connection of the last transfer open for the next.
CURL* handleOfThread() {
    thread_local const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle(curl_easy_init(),
                                                                                  &curl_easy_cleanup);
    curl_easy_reset(handle.get());
    return handle.get();
}

class Transfer final {
public:
    Transfer(const TransferRequest& request, URLBodyReader& reader, const std::function<bool()>& isStopped)
        : m_request(request)
        , m_reader(reader)
        , m_isStopped(isStopped)
        , m_curl(handleOfThread()) {}
    ~Transfer() { curl_slist_free_all(m_headers); }
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    void run() {
        configure();
        const CURLcode code = curl_easy_perform(m_curl);
        if (m_failure) {
            std::rethrow_exception(m_failure);
        }
        if (code != CURLE_OK) {
            throw errorOf(code);
        }
        beginOnce();
        m_reader.finish();
    }

private:
    template<class Value> void set(CURLoption option, Value value) {
        curl_easy_setopt(m_curl, option, value);
    }

    void configure() {
        set(CURLOPT_URL, m_request.url.c_str());
        set(CURLOPT_NOSIGNAL, 1L);
        // Whoever ends a transfer does not wait for the system's resolver.
        set(CURLOPT_QUICK_EXIT, 1L);
        set(CURLOPT_USERAGENT, "ondavia/" ONDAVIA_VERSION);
        set(CURLOPT_ACCEPT_ENCODING, "");
        set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));
        set(CURLOPT_BUFFERSIZE, readSize);
        set(CURLOPT_PROTOCOLS_STR, "http,https");
        set(CURLOPT_FOLLOWLOCATION, 1L);
        set(CURLOPT_MAXREDIRS, maximumRedirects);
        // What was asked for encrypted never goes on in the clear; the first address decides.
        set(CURLOPT_REDIR_PROTOCOLS_STR, m_request.url.starts_with("https:") ? "https" : "http,https");
        set(CURLOPT_TIMEOUT_MS, static_cast<long>(m_request.configuration.resourceTimeout * 1000));
        set(CURLOPT_WRITEFUNCTION, &Transfer::receive);
        set(CURLOPT_WRITEDATA, this);
        set(CURLOPT_NOPROGRESS, 0L);
        set(CURLOPT_XFERINFOFUNCTION, &Transfer::watch);
        set(CURLOPT_XFERINFODATA, this);
        for (const auto& [name, value] : m_request.headers) {
            m_headers = curl_slist_append(m_headers, (name + ": " + value).c_str());
        }
        set(CURLOPT_HTTPHEADER, m_headers);
    }

    static std::size_t receive(char* bytes, std::size_t, std::size_t size, void* self) {
        return static_cast<Transfer*>(self)->take({bytes, size}) ? size : 0;
    }

    /// False ends the transfer with what stands in m_failure.
    bool take(std::string_view bytes) {
        try {
            beginOnce();
            m_received += bytes.size();
            if (m_received > m_request.maximumBody) {
                throw URLError(URLError::Kind::TooLong, "The reply is longer than " +
                                                            std::to_string(m_request.maximumBody) + " bytes");
            }
            m_reader.receive(bytes);
            // The reader's own time is no silence of the server.
            m_lastActivity = Clock::now();
            return true;
        } catch (...) {
            // Raised again when libcurl has returned: no exception may cross it.
            m_failure = std::current_exception();
            return false;
        }
    }

    void beginOnce() {
        if (m_began) {
            return;
        }
        m_began = true;
        long status = 0;
        curl_easy_getinfo(m_curl, CURLINFO_RESPONSE_CODE, &status);
        m_reader.begin(status > 0 ? std::optional(static_cast<int>(status)) : std::nullopt);
    }

    static int watch(void* self, curl_off_t, curl_off_t downloaded, curl_off_t, curl_off_t) {
        return static_cast<Transfer*>(self)->goesOn(downloaded) ? 0 : 1;
    }

    /// Called at least about once a second.
    bool goesOn(curl_off_t downloaded) {
        const auto now = Clock::now();
        if (downloaded != m_downloaded) {
            m_downloaded = downloaded;
            m_lastActivity = now;
        }
        const std::chrono::duration<double> silence = now - m_lastActivity;
        if (silence.count() > m_request.configuration.requestTimeout) {
            fail(URLError::Kind::TimedOut, "The server was silent for too long");
        } else if (m_isStopped()) {
            fail(URLError::Kind::Cancelled, "Cancelled");
        }
        return m_failure == nullptr;
    }

    void fail(URLError::Kind kind, const char* description) {
        if (!m_failure) {
            m_failure = std::make_exception_ptr(URLError(kind, description));
        }
    }

    const TransferRequest& m_request;
    URLBodyReader& m_reader;
    const std::function<bool()>& m_isStopped;
    CURL* m_curl;
    curl_slist* m_headers = nullptr;
    std::exception_ptr m_failure;
    Clock::time_point m_lastActivity = Clock::now();
    curl_off_t m_downloaded = 0;
    std::size_t m_received = 0;
    bool m_began = false;
};

} // namespace

void performTransfer(const TransferRequest& request, URLBodyReader& reader,
                     const std::function<bool()>& isStopped) {
    static const CURLcode initialized = curl_global_init(CURL_GLOBAL_DEFAULT);
    if (initialized != CURLE_OK) {
        throw errorOf(initialized);
    }
    Transfer(request, reader, isStopped).run();
}

} // namespace ondavia
