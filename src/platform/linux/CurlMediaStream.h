#pragma once

#include "platform/linux/ByteSource.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace ondavia {

class MediaConnection;

/// Whether what begins so is a list of addresses that are relative to its own.
[[nodiscard]] bool namesOtherAddresses(std::string_view beginning);

/// How a stream's connection ended.
enum class MediaStreamEnd {
    /// It has not, or was closed by its reader.
    Open,
    /// All that the server announced has arrived, or the server closed a reply without a length.
    Whole,
    /// Refused, silent for too long, or cut before all that was announced had arrived.
    BrokenOff
};

/// One film or channel over HTTP or HTTPS, read by one thread at the pace of that thread: what it has not
/// asked for stays with the server, but for `readAhead` and the socket's buffers. It has one connection at
/// a time: a seek closes the old one before it opens the next. Nothing is fetched anew by itself: what lies
/// behind the place where a reply broke off cannot be had any more, unless somebody goes back first; and
/// nothing at all once the server has refused to give more, or did not answer. A reader that went on looking
/// elsewhere would take the end of a film, of all places, for where it is.
///
/// What it logs holds no address.
class CurlMediaStream final : public ByteSource {
public:
    static constexpr std::size_t readAhead = std::size_t{256} << 10;
    /// Bytes. A day of segments of two seconds has some 6 MiB.
    static constexpr std::size_t longestPlaylist = std::size_t{8} << 20;

    /// `url`, encoded, may hold the account. Opens nothing yet.
    explicit CurlMediaStream(std::string url);
    ~CurlMediaStream() override;
    CurlMediaStream(const CurlMediaStream&) = delete;
    CurlMediaStream& operator=(const CurlMediaStream&) = delete;

    /// Waits for the first bytes. A list of addresses has none that are worth reading, but is waited for to
    /// its end; one that is longer than `longestPlaylist`, or takes more than a minute, has failed.
    [[nodiscard]] bool open() override;
    [[nodiscard]] std::int64_t read(char* to, std::size_t size) override;
    /// False where the server gives no ranges.
    [[nodiscard]] bool seek(std::int64_t offset) override;
    [[nodiscard]] bool isSeekable() const override { return m_seekable; }
    [[nodiscard]] std::optional<std::int64_t> size() const override { return m_size; }
    /// Whether the reply is a list of addresses that are relative to its own. Any thread.
    [[nodiscard]] bool isPlaylist() const { return m_isPlaylist; }

    /// Closes the connection now.
    void cancel() override;
    /// Any thread.
    [[nodiscard]] MediaStreamEnd end() const { return m_end; }
    /// The status line of the last reply, cut where it is long, and why it failed if it did. Empty before the
    /// first. The server's own words. Any thread; waits for nobody.
    [[nodiscard]] std::string answer() const;

private:
    struct MultiDeleter {
        void operator()(void* multi) const;
    };

    /// All with the lock held.
    [[nodiscard]] bool openNow();
    [[nodiscard]] bool playlistEnds();
    [[nodiscard]] std::int64_t readNow(char* to, std::size_t size);
    [[nodiscard]] bool connect();
    [[nodiscard]] bool advance();
    [[nodiscard]] bool takeReply();
    [[nodiscard]] bool awaitBytes(std::size_t count);
    [[nodiscard]] bool settle();
    bool fail(std::string_view reason);
    bool fail(std::string_view reason, std::string answer);
    /// Fails for good.
    bool giveUp(std::string_view reason);
    /// Fails amid a reply.
    bool lose(std::string_view reason);

    void closeIfCancelled();
    void setAnswer(std::string answer);

    const std::string m_url;
    /// CURLM*: outlives every connection, so that a waiting reader can be woken at any time.
    std::unique_ptr<void, MultiDeleter> m_multi;
    /// Whoever holds it may touch what follows.
    std::mutex m_mutex;
    std::unique_ptr<MediaConnection> m_connection;
    /// Of the next byte for the reader.
    std::int64_t m_position = 0;
    std::optional<std::int64_t> m_size;
    bool m_seekable = false;
    /// Until a seek gives another chance.
    bool m_failed = false;
    /// From where on nothing can be had.
    std::optional<std::int64_t> m_brokenAt;

    /// Held for a moment only, unlike the other one.
    mutable std::mutex m_answerMutex;
    std::string m_answer;

    std::atomic<bool> m_isPlaylist = false;
    std::atomic<bool> m_cancelled = false;
    std::atomic<MediaStreamEnd> m_end = MediaStreamEnd::Open;
};

} // namespace ondavia
