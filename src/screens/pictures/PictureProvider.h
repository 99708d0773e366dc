#pragma once

#include "base/Date.h"

#include <QDateTime>
#include <QQuickAsyncImageProvider>
#include <QThreadPool>
#include <QUrl>

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

class QNetworkDiskCache;

namespace ondavia {

class URLSession;

/// Where QML finds the picture of a catalogue row: an address that only `PictureProvider` reads. Empty
/// unless the text is an address of the web, since it comes from outside and must not name a file of this
/// machine.
[[nodiscard]] QUrl pictureUrl(const std::optional<std::string>& text);

/// Pictures from the web, no larger than they are shown and kept on disk for a week. One that cannot be
/// had is an empty picture, without a warning: providers list many that are gone.
///
/// It fetches by itself because Qt Quick's own network access mixes pictures up: one that is given up
/// while it loads, as happens when a window changes its size, can leave its reply to the next.
class PictureLoader final {
public:
    /// Largest size of the folder, in bytes.
    static constexpr qint64 maximumCacheSize = qint64{256} << 20;

    /// `now` is the clock that the age of what is kept is told by.
    PictureLoader(std::shared_ptr<URLSession> session, const std::filesystem::path& folder,
                  std::function<Date()> now = currentDate);
    ~PictureLoader();

    /// Begins to load a picture by the last part of its address. The caller owns the response. Any thread.
    [[nodiscard]] QQuickImageResponse* load(const QString& id, const QSize& size);

    /// Waits for the transfers under way, which end early; later ones come back empty. Any thread.
    void end();

private:
    [[nodiscard]] QImage picture(const QUrl& url, QSize size);
    [[nodiscard]] QByteArray bytesOf(const QUrl& url);
    [[nodiscard]] QByteArray fetched(const QUrl& url);
    [[nodiscard]] QByteArray kept(const QUrl& url, bool evenIfOld);
    [[nodiscard]] QDateTime time() const;
    void keep(const QUrl& url, const QByteArray& bytes);

    std::shared_ptr<URLSession> m_session;
    std::mutex m_cacheMutex;
    std::unique_ptr<QNetworkDiskCache> m_cache;
    /// One decodes at a time: the rest of the machine draws.
    std::mutex m_decoding;
    std::function<Date()> m_now;
    std::atomic_bool m_ends = false;
    QThreadPool m_pool;
};

/// Makes the engine ask a loader. The engine's threads may keep it beyond the engine: whoever made the
/// loader ends it.
class PictureProvider final : public QQuickAsyncImageProvider {
public:
    /// The name under which the engine knows it.
    static constexpr const char* name = "pictures";

    explicit PictureProvider(std::shared_ptr<PictureLoader> loader)
        : m_loader(std::move(loader)) {}

    /// Called on the engine's loader thread.
    QQuickImageResponse* requestImageResponse(const QString& id, const QSize& requestedSize) override {
        return m_loader->load(id, requestedSize);
    }

private:
    std::shared_ptr<PictureLoader> m_loader;
};

} // namespace ondavia
