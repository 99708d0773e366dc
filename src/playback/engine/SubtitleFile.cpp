#include "playback/engine/SubtitleFile.h"

#include "base/AppLogger.h"
#include "platform/linux/CurlMediaStream.h"
#include "platform/linux/CurlTransfer.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

namespace ondavia::engine {
namespace {

/// Longest download, in seconds: one that never ends must not keep a thread of mpv's for good.
constexpr double longestDownload = 600;

class AllowedBody final : public URLBodyReader {
public:
    explicit AllowedBody(std::atomic<std::int64_t>& allowance)
        : m_allowance(allowance) {}

    void begin(std::optional<int> status) override {
        if (status && (*status < 200 || *status > 299)) {
            throw URLError(URLError::Kind::Other, "HTTP " + std::to_string(*status));
        }
    }
    void receive(std::string_view received) override {
        const auto count = static_cast<std::int64_t>(received.size());
        if (m_allowance.fetch_sub(count) < count) {
            throw URLError(URLError::Kind::TooLong, "There are too many bytes of subtitles");
        }
        bytes += received;
    }
    void finish() override {}

    std::string bytes;

private:
    std::atomic<std::int64_t>& m_allowance;
};

} // namespace

bool SubtitleFile::open() {
    const TransferRequest request{.url = m_url,
                                  .headers = {{"User-Agent", subtitleUserAgent}},
                                  .maximumBody = URLSession::maximumCollectedBody,
                                  .configuration = {.resourceTimeout = longestDownload}};
    AllowedBody body(*m_allowance);
    try {
        performTransfer(request, body, [this] { return m_isCancelled.load(); });
    } catch (const std::exception& error) {
        if (!m_isCancelled) {
            AppLogger::player.error("A subtitle file did not come: %s", {error.what()});
        }
        return false;
    }
    m_bytes = std::move(body.bytes);
    m_position = 0;
    return !namesOtherAddresses(m_bytes);
}

std::int64_t SubtitleFile::read(char* to, std::size_t size) {
    const std::size_t count = std::min(size, m_bytes.size() - m_position);
    std::memcpy(to, m_bytes.data() + m_position, count);
    m_position += count;
    return static_cast<std::int64_t>(count);
}

bool SubtitleFile::seek(std::int64_t offset) {
    if (!std::cmp_less_equal(offset, m_bytes.size()) || offset < 0) {
        return false;
    }
    m_position = static_cast<std::size_t>(offset);
    return true;
}

std::optional<std::int64_t> SubtitleFile::size() const {
    return static_cast<std::int64_t>(m_bytes.size());
}

} // namespace ondavia::engine
