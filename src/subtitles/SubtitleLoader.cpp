#include "subtitles/SubtitleLoader.h"

#include "base/AppLogger.h"
#include "platform/PoolWork.h"
#include "subtitles/SubtitleText.h"

#include <QUrl>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <qcoro/qcorofuture.h>
#include <unordered_set>

namespace ondavia {
namespace {

using Tracks = std::vector<SubtitleTrack>;

/// The server refused the file.
struct StatusError final {
    int status;
};

/// What one load's files have in common.
struct Load final {
    std::shared_ptr<URLSession> session;
    std::size_t maximumFile;
    /// Of all files together, in bytes.
    std::shared_ptr<std::atomic<std::int64_t>> left;
    std::stop_token stop;
};

class FileReader final : public URLBodyReader {
public:
    explicit FileReader(Load load)
        : m_load(std::move(load)) {}

    void begin(std::optional<int> status) override {
        if (status && (*status < 200 || *status > 299)) {
            throw StatusError{*status};
        }
    }
    void receive(std::string_view received) override {
        if (m_load.stop.stop_requested()) {
            throw URLError(URLError::Kind::Cancelled, "Nobody wants the subtitles any more");
        }
        const auto count = static_cast<std::int64_t>(received.size());
        if (received.size() > m_load.maximumFile - bytes.size() || m_load.left->fetch_sub(count) < count) {
            throw URLError(URLError::Kind::TooLong, "There are too many bytes of subtitles");
        }
        bytes += received;
    }
    void finish() override {}

    std::string bytes;

private:
    Load m_load;
};

QUrl requiredURL(const std::string& text) {
    const auto url = makeURL(text);
    if (!url) {
        throw URLError(URLError::Kind::Other, "The address of the subtitles is none");
    }
    return *url;
}

/// Absent where they cannot be had. Takes what it needs by value: whoever called may be gone.
QCoro::Task<std::optional<std::string>> download(Load load, std::string url) {
    const auto reader = std::make_shared<FileReader>(load);
    const std::vector<URLSession::Header> headers{{"User-Agent", subtitleUserAgent}};
    try {
        const QUrl address = requiredURL(url);
        const auto transfer = load.session->stream(address, reader, headers);
        co_await transfer;
        co_return std::move(reader->bytes);
    } catch (const StatusError& refusal) {
        AppLogger::subtitle.error("HTTP %ld loading %s", {refusal.status, url});
    } catch (const URLError& error) {
        AppLogger::subtitle.error("Error loading subtitle (url redacted) code=%{public}ld domain=%{public}s",
                                  {static_cast<int>(error.kind()), "URLError"});
    }
    co_return std::nullopt;
}

/// Absent for a file that cannot be had or has no cue.
QCoro::Task<std::optional<SubtitleTrack>> loadOne(Load load, std::string url) {
    auto downloading = download(load, url);
    auto bytes = co_await downloading;
    if (!bytes) {
        co_return std::nullopt;
    }
    const auto parsing = runOnPool([url, content = std::move(*bytes)]() mutable {
        return SubtitleTrack::make(url, decodeSubtitleText(std::move(content)));
    });
    auto track = co_await parsing;
    if (track) {
        AppLogger::subtitle.debug("Loaded %ld cues from %s", {track->cues.size(), url});
    } else {
        AppLogger::subtitle.error("Parsed zero cues from %s", {url});
    }
    co_return track;
}

QCoro::Task<void> loadInto(std::shared_ptr<Tracks> tracks, Load load, std::string url) {
    auto loading = loadOne(load, url);
    auto track = co_await loading;
    if (track) {
        tracks->push_back(std::move(*track));
    }
}

void dropRepeated(std::vector<std::string>& urls) {
    std::unordered_set<std::string> known;
    std::erase_if(urls, [&known](const std::string& url) { return !known.insert(url).second; });
}

} // namespace

QCoro::Task<std::vector<SubtitleTrack>>
SubtitleLoader::loadAll(URLSessionFactory makeSession, std::vector<std::string> urls, std::stop_token stop) {
    const auto tracks = std::make_shared<Tracks>();
    dropRepeated(urls);
    if (!urls.empty()) {
        const URLSessionConfiguration configuration{.requestTimeout = requestTimeout,
                                                    .resourceTimeout = resourceTimeout};
        const Load load{makeSession(configuration), std::max(maximumLoad / urls.size(), minimumShare),
                        std::make_shared<std::atomic<std::int64_t>>(maximumLoad), stop};
        std::vector<QCoro::Task<void>> loads;
        for (const auto& url : urls) {
            loads.push_back(loadInto(tracks, load, url));
        }
        for (const auto& one : loads) {
            co_await one;
        }
        std::ranges::stable_sort(*tracks, {}, &SubtitleTrack::displayName);
    }
    co_return std::move(*tracks);
}

} // namespace ondavia
