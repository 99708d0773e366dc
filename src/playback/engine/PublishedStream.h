#pragma once

#include "platform/linux/CurlMediaStream.h"

#include <mpv/client.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace ondavia::engine {

/// Bytes that may still be read; several streams may share one.
using ByteAllowance = std::shared_ptr<std::atomic<std::int64_t>>;

/// A stream over our own connection, under an address for mpv. mpv never sees the real one, which holds
/// the account, and how the connection ended can be asked here. Main thread.
class PublishedStream final {
public:
    /// Lets this instance open published streams.
    static void registerWith(mpv_handle* handle);

    /// `url` over HTTP or HTTPS; nothing is opened yet. Reading fails once `allowance` is used up; null is
    /// without a bound, as for what is read at the pace of playing.
    explicit PublishedStream(std::string url, ByteAllowance allowance = nullptr);
    /// The connection is closed at once.
    ~PublishedStream();
    PublishedStream(const PublishedStream&) = delete;
    PublishedStream& operator=(const PublishedStream&) = delete;

    [[nodiscard]] std::string address() const;
    [[nodiscard]] MediaStreamEnd end() const { return m_stream->end(); }
    [[nodiscard]] std::string answer() const { return m_stream->answer(); }
    /// Known once mpv could not open it: that is left to FFmpeg, which finds what the list names.
    [[nodiscard]] bool isPlaylist() const { return m_stream->isPlaylist(); }

private:
    std::shared_ptr<CurlMediaStream> m_stream;
    std::uint64_t m_number;
};

} // namespace ondavia::engine
