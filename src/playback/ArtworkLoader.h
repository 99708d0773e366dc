#pragma once

#include "platform/MPNowPlayingInfoCenter.h"
#include "platform/URLSession.h"

#include <QFuture>
#include <QThreadPool>
#include <QUrl>

#include <atomic>
#include <memory>
#include <string>

namespace ondavia {

/// Fetches and decodes the artwork of what plays, one at a time and on a thread of its own. Main thread.
class ArtworkLoader final {
public:
    /// Of a reply, in bytes; a longer one is no artwork.
    static constexpr std::size_t maximumBytes = std::size_t{16} << 20;
    /// Of an artwork's longer side, in pixels; a larger picture is made smaller.
    static constexpr int longestSide = 1024;

    explicit ArtworkLoader(URLSessionFactory makeSession)
        : m_makeSession(std::move(makeSession)) {}
    /// Ends a transfer under way within about a second; a picture that is being decoded, whose pixels Qt
    /// bounds, is decoded to its end.
    ~ArtworkLoader() { cancel(); }
    ArtworkLoader(const ArtworkLoader&) = delete;
    ArtworkLoader& operator=(const ArtworkLoader&) = delete;

    /// Absent where the picture cannot be had or is none, and where `cancel` came in between.
    [[nodiscard]] QFuture<std::shared_ptr<const MPMediaItemArtwork>> load(const QUrl& url);
    /// Nobody waits for the artwork any more.
    void cancel() { *m_isCancelled = true; }

private:
    URLSessionFactory m_makeSession;
    std::shared_ptr<URLSession> m_session;
    std::shared_ptr<std::atomic_bool> m_isCancelled = std::make_shared<std::atomic_bool>(false);
    QThreadPool m_pool;
};

/// The picture in `bytes`, absent when they are none. Any thread.
[[nodiscard]] std::shared_ptr<const MPMediaItemArtwork> makeArtwork(const std::string& bytes);

} // namespace ondavia
