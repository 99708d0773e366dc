#include "platform/linux/MediaConnection.h"

#include "base/Redaction.h"
#include "platform/linux/CurlMediaStream.h"

#include <algorithm>
#include <utility>

namespace ondavia {
namespace {

constexpr long longestRedirection = 16;
constexpr long socketRead = 128L << 10;
/// Bytes that are kept of a status line; a server may send a hundred thousand.
constexpr std::size_t longestAnswer = 120;
/// Bytes of it that are searched for secrets before it is cut, since nobody would know a half of one.
constexpr std::size_t longestStatusLine = 4096;

std::string answerOf(std::string_view line) {
    line = line.substr(0, line.find_first_of("\r\n"));
    const TextEnd end = line.size() > longestStatusLine ? TextEnd::Cut : TextEnd::Whole;
    return maskSecrets(line.substr(0, longestStatusLine), end).substr(0, longestAnswer);
}

} // namespace

MediaConnection::MediaConnection(CURLM* multi, const std::string& url, std::int64_t from)
    : m_multi(multi)
    , m_easy(curl_easy_init())
    , m_aliases(curl_slist_append(nullptr, "ICY 200 OK")) {
    configure(url, from);
    curl_multi_add_handle(m_multi, m_easy);
}

MediaConnection::~MediaConnection() {
    curl_multi_remove_handle(m_multi, m_easy);
    curl_easy_cleanup(m_easy);
    curl_slist_free_all(m_aliases);
}

void MediaConnection::advance() {
    int running = 0;
    const std::size_t before = m_bytes.size();
    curl_multi_perform(m_multi, &running);
    int remaining = 0;
    while (const CURLMsg* message = curl_multi_info_read(m_multi, &remaining)) {
        if (message->msg == CURLMSG_DONE) {
            m_result = message->data.result;
        }
    }
    if (!m_result && m_bytes.size() == before) {
        curl_multi_poll(m_multi, nullptr, 0, 1000, nullptr);
    }
}

long MediaConnection::status() const {
    long status = 0;
    curl_easy_getinfo(m_easy, CURLINFO_RESPONSE_CODE, &status);
    return status;
}

std::string_view MediaConnection::header(const char* name) const {
    curl_header* header = nullptr;
    constexpr int lastReply = -1;
    const CURLHcode code = curl_easy_header(m_easy, name, 0, CURLH_HEADER, lastReply, &header);
    return code == CURLHE_OK ? header->value : std::string_view();
}

std::optional<std::int64_t> MediaConnection::contentLength() const {
    curl_off_t length = -1;
    curl_easy_getinfo(m_easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
    return length >= 0 ? std::optional<std::int64_t>(length) : std::nullopt;
}

void MediaConnection::drop(std::size_t count) {
    const std::size_t here = std::min(count, bytes().size());
    m_taken += here;
    m_toDrop += count - here;
    if (m_taken < m_bytes.size()) {
        return;
    }
    m_bytes.clear();
    m_taken = 0;
    if (std::exchange(m_paused, false)) {
        curl_easy_pause(m_easy, CURLPAUSE_CONT);
    }
}

void MediaConnection::configure(const std::string& url, std::int64_t from) {
    set(CURLOPT_URL, url.c_str());
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_USERAGENT, "ondavia/" ONDAVIA_VERSION);
    // A connection is one stream: closing it ends the one and leaves no other behind.
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_FORBID_REUSE, 1L);
    set(CURLOPT_HTTP200ALIASES, m_aliases);
    // Also from the start: the answer tells whether there are ranges.
    set(CURLOPT_RANGE, (std::to_string(from) + "-").c_str());
    set(CURLOPT_BUFFERSIZE, socketRead);
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_MAXREDIRS, longestRedirection);
    // A redirect never leads from an encrypted address to a plain one.
    set(CURLOPT_REDIR_PROTOCOLS_STR, url.starts_with("https:") ? "https" : "http,https");
    // Closing waits for no name that is still being looked up.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_WRITEFUNCTION, &MediaConnection::receive);
    set(CURLOPT_WRITEDATA, this);
    set(CURLOPT_HEADERFUNCTION, &MediaConnection::receiveHeader);
    set(CURLOPT_HEADERDATA, this);
}

std::size_t MediaConnection::receive(char* bytes, std::size_t /*one*/, std::size_t size, void* self) {
    return static_cast<MediaConnection*>(self)->take({bytes, size});
}

std::size_t MediaConnection::receiveHeader(char* bytes, std::size_t /*one*/, std::size_t size, void* self) {
    const std::string_view line(bytes, size);
    if (line.starts_with("HTTP/") || line.starts_with("ICY ")) {
        static_cast<MediaConnection*>(self)->m_statusLine = answerOf(line);
    }
    return size;
}

std::size_t MediaConnection::take(std::string_view arrived) {
    m_began = true;
    if (bytes().size() >= CurlMediaStream::readAhead) {
        m_paused = true;
        return CURL_WRITEFUNC_PAUSE;
    }
    const std::size_t dropped = std::min(m_toDrop, arrived.size());
    m_toDrop -= dropped;
    m_bytes += arrived.substr(dropped);
    return arrived.size();
}

} // namespace ondavia
