#pragma once

#include <QString>
#include <qcoro/qcorotask.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

class QUrl;

namespace ondavia {

/// A URL made from a text, or absent when the text is none: empty, or not well-formed by strict rules
/// (a blank, a "%" that escapes nothing). Nothing is percent-encoded for the caller.
[[nodiscard]] std::optional<QUrl> makeURL(std::string_view text);

/// The User-Agent of external subtitle files, whoever fetches them: some servers give theirs to players only.
inline constexpr const char* subtitleUserAgent = "VLC/3.0.16 LibVLC/3.0.16";

/// A failure of the transport. `what()` has its URLs masked.
class URLError final : public std::runtime_error {
public:
    enum class Kind {
        /// The server's name is not known. Logs hold the numbers, where 0 would read as no error.
        UnknownHost = 1,
        /// Nobody answers at the address.
        Unreachable,
        /// The server took too long.
        TimedOut,
        /// No encrypted connection with the server.
        NoEncryption,
        /// Nobody vouches for the server's certificate.
        Untrusted,
        /// The connection ended without a reply.
        NoReply,
        /// The connection broke off.
        BrokenOff,
        /// The connection ended before the reply did.
        Cut,
        TooManyRedirects,
        /// The body is past its bound.
        TooLong,
        /// The transfer was told to end.
        Cancelled,
        /// This machine could not carry it out, or something rare.
        Other,
    };

    URLError(Kind kind, const std::string& description);

    [[nodiscard]] Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

struct URLResponse final {
    /// Status of an HTTP reply; absent for other schemes.
    std::optional<int> statusCode;
    std::string body;
};

/// Takes a body as it arrives. One object serves one transfer; its calls come one at a time, in order,
/// from the transfer's own thread. What it throws ends the transfer and is raised from
/// `URLSession::stream`.
class URLBodyReader {
public:
    virtual ~URLBodyReader() = default;
    /// Before the first byte, with the final reply's status (absent for other schemes).
    virtual void begin(std::optional<int> statusCode) = 0;
    virtual void receive(std::string_view bytes) = 0;
    /// After the last byte of a body that arrived whole.
    virtual void finish() = 0;
};

/// Plain GETs over HTTP and HTTPS. Replies are inflated, redirects followed (16 at most), certificates
/// verified. Nothing is cached and no header is added beyond the platform's defaults.
///
/// `data` and `stream` are awaited on a thread with an event loop and resume there; sockets are served
/// elsewhere, so that a busy main thread slows no download. A transfer runs to its
/// end, whoever still waits for it.
class URLSession {
public:
    /// The largest body that `data` collects, in bytes after inflation; a longer one is a URLError.
    static constexpr std::size_t maximumCollectedBody = std::size_t{64} << 20;
    /// The largest body that `stream` passes on, in bytes after inflation.
    static constexpr std::size_t maximumStreamedBody = std::size_t{2047} << 20;

    using Header = std::pair<std::string, std::string>;

    virtual ~URLSession() = default;
    /// The whole reply. Raises URLError.
    virtual QCoro::Task<URLResponse> data(QUrl url, std::vector<Header> headers = {}) = 0;
    /// The whole reply of at most `maximumBody` bytes after inflation, awaited by standing still: for
    /// threads without an event loop, which find the connection of their last call again. Ends early with a
    /// URLError when `stop` becomes true, within about a second. Any thread but the main one.
    virtual URLResponse fetch(const QUrl& url, std::size_t maximumBody, const std::atomic_bool& stop) = 0;
    /// The reply through `reader`, which may take its time: what it has not taken yet stays
    /// with the server, but for the socket's buffers. Raises
    /// URLError, or what the reader threw.
    virtual QCoro::Task<void> stream(QUrl url, std::shared_ptr<URLBodyReader> reader,
                                     std::vector<Header> headers = {}) = 0;
};

/// Time-outs of a session, in seconds.
struct URLSessionConfiguration final {
    /// Longest silence of the server.
    double requestTimeout = 60;
    /// Longest duration of a whole transfer.
    double resourceTimeout = 7.0 * 24 * 3600;
};

/// Makes sessions, so that a client can be given one with its own time-outs.
using URLSessionFactory = std::function<std::shared_ptr<URLSession>(const URLSessionConfiguration&)>;

} // namespace ondavia
