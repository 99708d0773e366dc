#pragma once

#include "platform/linux/CurlMediaStream.h"

#include <mpv/client.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace ondavia::engine {

/// Bytes of ours under an address for mpv, which never sees where they come from: that holds the account.
/// Main thread.
class PublishedSource final {
public:
    /// Lets this instance open what is published.
    static void registerWith(mpv_handle* handle);

    /// Nothing is opened yet.
    explicit PublishedSource(std::shared_ptr<ByteSource> source);
    /// Cancels the source.
    ~PublishedSource();
    PublishedSource(const PublishedSource&) = delete;
    PublishedSource& operator=(const PublishedSource&) = delete;

    [[nodiscard]] std::string address() const;

private:
    std::shared_ptr<ByteSource> m_source;
    std::uint64_t m_number;
};

/// A stream over our own connection, which can be asked how it ended. Main thread.
class PublishedStream final {
public:
    /// `url` over HTTP or HTTPS; nothing is opened yet.
    explicit PublishedStream(std::string url)
        : m_stream(std::make_shared<CurlMediaStream>(std::move(url))) {}

    [[nodiscard]] std::string address() const { return m_source.address(); }
    [[nodiscard]] MediaStreamEnd end() const { return m_stream->end(); }
    [[nodiscard]] std::string answer() const { return m_stream->answer(); }
    /// Known once mpv could not open it: that is left to FFmpeg, which finds what the list names.
    [[nodiscard]] bool isPlaylist() const { return m_stream->isPlaylist(); }

private:
    std::shared_ptr<CurlMediaStream> m_stream;
    PublishedSource m_source{m_stream};
};

} // namespace ondavia::engine
