#pragma once

#include <cstdint>
#include <curl/curl.h>
#include <optional>
#include <string>
#include <string_view>

namespace ondavia {

/// One request for a film or a channel, and its reply. Its end closes the connection. One thread at a time.
class MediaConnection final {
public:
    /// `multi` outlives the object; `from` is the first byte that is wanted.
    MediaConnection(CURLM* multi, const std::string& url, std::int64_t from);
    ~MediaConnection();
    MediaConnection(const MediaConnection&) = delete;
    MediaConnection& operator=(const MediaConnection&) = delete;

    /// Takes what has arrived, or waits for something to arrive: about a second, or until somebody wakes it.
    void advance();

    [[nodiscard]] bool hasReply() const { return m_began || m_result.has_value(); }
    /// How the transfer ended, once it has.
    [[nodiscard]] std::optional<CURLcode> result() const { return m_result; }
    [[nodiscard]] bool hasBegun() const { return m_began; }

    /// Of the last reply, cut where it is long; the server's own words.
    [[nodiscard]] const std::string& statusLine() const { return m_statusLine; }
    [[nodiscard]] long status() const;
    [[nodiscard]] std::string_view header(const char* name) const;
    [[nodiscard]] std::optional<std::int64_t> contentLength() const;

    [[nodiscard]] std::string_view bytes() const { return std::string_view(m_bytes).substr(m_taken); }
    /// Leaves out so many of the next bytes, also of those that are still to come.
    void drop(std::size_t count);

private:
    template<class Value> void set(CURLoption option, Value value) {
        curl_easy_setopt(m_easy, option, value);
    }
    void configure(const std::string& url, std::int64_t from);
    static std::size_t receive(char* bytes, std::size_t one, std::size_t size, void* self);
    static std::size_t receiveHeader(char* bytes, std::size_t one, std::size_t size, void* self);
    std::size_t take(std::string_view arrived);

    CURLM* m_multi;
    CURL* m_easy;
    curl_slist* m_aliases;
    std::string m_statusLine;
    std::string m_bytes;
    std::size_t m_taken = 0;
    /// Of what is still to come.
    std::size_t m_toDrop = 0;
    bool m_began = false;
    bool m_paused = false;
    std::optional<CURLcode> m_result;
};

} // namespace ondavia
