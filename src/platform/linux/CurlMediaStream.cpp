#include "platform/linux/CurlMediaStream.h"

#include "base/AppLogger.h"
#include "platform/linux/MediaConnection.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstring>
#include <curl/curl.h>
#include <stdexcept>

namespace ondavia {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds longestSilence{60};
/// What is nearer ahead is read and dropped: cheaper than another connection.
constexpr std::int64_t nearBytes = 256 << 10;
/// Enough to know a list of addresses by.
constexpr std::size_t tellingBytes = 512;

struct ContentRange final {
    std::int64_t first = 0;
    std::optional<std::int64_t> total;
};

std::optional<std::int64_t> number(std::string_view text) {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end != text.data() && value >= 0 ? std::optional(value) : std::nullopt;
}

/// Of "bytes 500-999/8000", or with "*" for a total that is not known.
std::optional<ContentRange> parseContentRange(std::string_view text) {
    constexpr std::string_view unit = "bytes ";
    const auto slash = text.find('/');
    if (!text.starts_with(unit) || slash == std::string_view::npos) {
        return std::nullopt;
    }
    const auto first = number(text.substr(unit.size()));
    return first ? std::optional(ContentRange{*first, number(text.substr(slash + 1))}) : std::nullopt;
}

CURLM* makeMulti() {
    static const CURLcode initialized = curl_global_init(CURL_GLOBAL_DEFAULT);
    CURLM* multi = initialized == CURLE_OK ? curl_multi_init() : nullptr;
    if (multi == nullptr) {
        throw std::runtime_error("libcurl cannot be had");
    }
    return multi;
}

} // namespace

bool namesOtherAddresses(std::string_view beginning) {
    beginning = beginning.substr(0, tellingBytes);
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (beginning.starts_with(byteOrderMark)) {
        beginning.remove_prefix(byteOrderMark.size());
    }
    return beginning.starts_with("#EXTM3U") || beginning.find("<MPD") != std::string_view::npos;
}

void CurlMediaStream::MultiDeleter::operator()(void* multi) const {
    curl_multi_cleanup(multi);
}

CurlMediaStream::CurlMediaStream(std::string url)
    : m_url(std::move(url))
    , m_multi(makeMulti()) {}

CurlMediaStream::~CurlMediaStream() = default;

bool CurlMediaStream::open() {
    const bool opened = [this] {
        const std::lock_guard lock(m_mutex);
        return openNow();
    }();
    closeIfCancelled();
    return opened;
}

bool CurlMediaStream::openNow() {
    if (!connect()) {
        return false;
    }
    static_cast<void>(awaitBytes(tellingBytes));
    if (m_cancelled || m_connection == nullptr || !namesOtherAddresses(m_connection->bytes())) {
        return !m_cancelled && m_connection != nullptr;
    }
    m_isPlaylist = playlistEnds();
    return false;
}

/// Whoever reads it next keeps all of it, whatever its length.
bool CurlMediaStream::playlistEnds() {
    const auto start = Clock::now();
    std::size_t length = 0;
    while (!m_connection->result()) {
        length += m_connection->bytes().size();
        m_connection->drop(m_connection->bytes().size());
        if (length > longestPlaylist || Clock::now() - start > longestSilence) {
            return giveUp("a playlist without an end");
        }
        if (!advance()) {
            return false;
        }
    }
    return true;
}

std::int64_t CurlMediaStream::read(char* to, std::size_t size) {
    const std::int64_t count = [=, this] {
        const std::lock_guard lock(m_mutex);
        return readNow(to, size);
    }();
    closeIfCancelled();
    return count;
}

std::int64_t CurlMediaStream::readNow(char* to, std::size_t size) {
    constexpr std::int64_t failure = -1;
    if (m_failed || m_cancelled) {
        return failure;
    }
    if (m_size && m_position >= *m_size) {
        m_connection.reset();
        m_end = MediaStreamEnd::Whole;
        return 0;
    }
    if ((m_connection == nullptr && !connect()) || !awaitBytes(1)) {
        return m_end == MediaStreamEnd::Whole ? 0 : failure;
    }
    const std::size_t count = std::min(size, m_connection->bytes().size());
    std::memcpy(to, m_connection->bytes().data(), count);
    m_connection->drop(count);
    m_position += static_cast<std::int64_t>(count);
    return static_cast<std::int64_t>(count);
}

bool CurlMediaStream::seek(std::int64_t offset) {
    const std::lock_guard lock(m_mutex);
    if (offset == m_position && !m_failed) {
        return true;
    }
    if (!m_seekable || offset < 0 || (m_brokenAt && offset >= *m_brokenAt)) {
        return false;
    }
    const std::int64_t ahead = offset - m_position;
    if (m_connection != nullptr && ahead > 0 && ahead <= nearBytes) {
        m_connection->drop(static_cast<std::size_t>(ahead));
    } else {
        m_connection.reset();
    }
    m_position = offset;
    m_failed = false;
    m_brokenAt.reset();
    m_end = MediaStreamEnd::Open;
    return true;
}

void CurlMediaStream::cancel() {
    m_cancelled = true;
    curl_multi_wakeup(m_multi.get());
    closeIfCancelled();
}

// Whoever has the lock calls this after giving it back, so that no cancellation is missed.
void CurlMediaStream::closeIfCancelled() {
    if (m_cancelled && m_mutex.try_lock()) {
        m_connection.reset();
        m_mutex.unlock();
    }
}

bool CurlMediaStream::connect() {
    m_connection.reset();
    m_connection = std::make_unique<MediaConnection>(m_multi.get(), m_url, m_position);
    m_end = MediaStreamEnd::Open;
    const auto start = Clock::now();
    while (!m_connection->hasReply()) {
        if (Clock::now() - start > longestSilence) {
            return giveUp("silent for too long");
        }
        if (!advance()) {
            return false;
        }
    }
    return takeReply();
}

bool CurlMediaStream::advance() {
    if (!m_cancelled) {
        m_connection->advance();
    }
    if (m_cancelled) {
        m_connection.reset();
        return false;
    }
    return true;
}

bool CurlMediaStream::takeReply() {
    setAnswer(m_connection->statusLine());
    const auto result = m_connection->result().value_or(CURLE_OK);
    if (!m_connection->hasBegun() && result != CURLE_OK) {
        return giveUp(curl_easy_strerror(result));
    }
    const long status = m_connection->status();
    constexpr long whole = 200;
    constexpr long part = 206;
    if (status != whole && status != part) {
        m_brokenAt = 0;
        return fail("answered " + std::to_string(status), m_connection->statusLine());
    }
    const auto range = status == part ? parseContentRange(m_connection->header("Content-Range"))
                                      : std::optional<ContentRange>();
    if (range.value_or(ContentRange()).first != m_position) {
        m_seekable = false;
        return fail("gives no ranges");
    }
    if (m_position == 0) {
        m_size = status == part ? range.value_or(ContentRange()).total : m_connection->contentLength();
        m_seekable = m_size && (range || m_connection->header("Accept-Ranges") == "bytes");
    }
    return true;
}

bool CurlMediaStream::awaitBytes(std::size_t count) {
    auto lastArrival = Clock::now();
    for (std::size_t known = m_connection->bytes().size(); known < count && !m_connection->result();
         known = m_connection->bytes().size()) {
        if (!advance()) {
            return false;
        }
        const auto now = Clock::now();
        if (m_connection->bytes().size() != known) {
            lastArrival = now;
        } else if (now - lastArrival > longestSilence) {
            return lose("silent for too long");
        }
    }
    return !m_connection->bytes().empty() || settle();
}

/// The reply is over. True when another one, with the bytes that are still missing, has begun.
bool CurlMediaStream::settle() {
    const auto result = *m_connection->result();
    if (result != CURLE_OK) {
        return lose(curl_easy_strerror(result));
    }
    if (!m_size || m_position >= *m_size) {
        m_end = MediaStreamEnd::Whole;
        return false;
    }
    // A server may give less than it was asked for, and say so.
    return m_connection->hasBegun() && m_seekable ? connect() && awaitBytes(1) : lose("ended too soon");
}

bool CurlMediaStream::giveUp(std::string_view reason) {
    m_brokenAt = 0;
    return fail(reason);
}

bool CurlMediaStream::lose(std::string_view reason) {
    m_brokenAt = m_position;
    return fail(reason);
}

std::string CurlMediaStream::answer() const {
    const std::lock_guard lock(m_answerMutex);
    return m_answer;
}

void CurlMediaStream::setAnswer(std::string answer) {
    const std::lock_guard lock(m_answerMutex);
    m_answer = std::move(answer);
}

bool CurlMediaStream::fail(std::string_view reason) {
    const std::string& line = m_connection->statusLine();
    return fail(reason, line.empty() ? std::string(reason) : line + ": " + std::string(reason));
}

bool CurlMediaStream::fail(std::string_view reason, std::string answer) {
    setAnswer(std::move(answer));
    AppLogger::player.error("The media server: %s", {reason});
    m_connection.reset();
    m_failed = true;
    m_end = MediaStreamEnd::BrokenOff;
    return false;
}

} // namespace ondavia
