#include "screens/pictures/PictureProvider.h"

#include "base/AppLogger.h"
#include "platform/RasterPicture.h"
#include "platform/URLSession.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QImageReader>
#include <QNetworkDiskCache>

namespace ondavia {

namespace {

constexpr int simultaneousTransfers = 6;
constexpr std::size_t maximumPictureBytes = std::size_t{16} << 20;
constexpr int daysKept = 7;

constexpr auto addressEncoding = QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals;

/// What the loader thread waits with. Between it and the thread that makes the picture, either may be
/// the first to go.
class PictureResponse final : public QQuickImageResponse {
public:
    struct Link final {
        std::mutex mutex;
        /// Null once the response is gone.
        PictureResponse* response = nullptr;
        std::atomic_bool isCancelled = false;

        void deliver(const QImage& image) {
            const std::lock_guard lock(mutex);
            if (response != nullptr) {
                QMetaObject::invokeMethod(
                    response, [target = response, image] { target->finish(image); }, Qt::QueuedConnection);
            }
        }
    };

    PictureResponse() { m_link->response = this; }
    ~PictureResponse() override {
        const std::lock_guard lock(m_link->mutex);
        m_link->response = nullptr;
    }

    [[nodiscard]] const std::shared_ptr<Link>& link() const { return m_link; }
    [[nodiscard]] QQuickTextureFactory* textureFactory() const override {
        return m_image.isNull() ? nullptr : QQuickTextureFactory::textureFactoryForImage(m_image);
    }
    void cancel() override { m_link->isCancelled = true; }

private:
    void finish(const QImage& image) {
        m_image = image;
        Q_EMIT finished();
    }

    std::shared_ptr<Link> m_link = std::make_shared<Link>();
    QImage m_image;
};

/// The cache writes its keys down, and an address may hold the account.
QUrl cacheKey(const QUrl& url) {
    const QByteArray digest = QCryptographicHash::hash(url.toEncoded(), QCryptographicHash::Sha256).toHex();
    return QUrl(QStringLiteral("picture:/%1").arg(QLatin1String(digest)));
}

/// At least as large as `wanted` in both directions, but never enlarged.
QImage decode(const QByteArray& bytes, QSize wanted) {
    QBuffer buffer;
    buffer.setData(bytes);
    if (!buffer.open(QIODevice::ReadOnly) || !isRasterPicture(buffer)) {
        return {};
    }
    QImageReader reader(&buffer);
    const QSize full = reader.size();
    if (full.isValid() && !wanted.isEmpty()) {
        const QSize covering = full.scaled(wanted, Qt::KeepAspectRatioByExpanding);
        if (covering.width() < full.width()) {
            reader.setScaledSize(covering);
        }
    }
    return reader.read();
}

} // namespace

QUrl pictureUrl(const std::optional<std::string>& text) {
    const QUrl url(QString::fromStdString(text.value_or(std::string())), QUrl::TolerantMode);
    if (url.scheme() != QLatin1String("http") && url.scheme() != QLatin1String("https")) {
        return {};
    }
    return QUrl(QStringLiteral("image://%1/%2")
                    .arg(QLatin1String(PictureProvider::name),
                         QLatin1String(url.toEncoded().toBase64(addressEncoding))));
}

PictureLoader::PictureLoader(std::shared_ptr<URLSession> session, const std::filesystem::path& folder,
                             std::function<Date()> now)
    : m_session(std::move(session))
    , m_cache(std::make_unique<QNetworkDiskCache>())
    , m_now(std::move(now)) {
    m_cache->setCacheDirectory(QString::fromStdString(folder.string()));
    m_cache->setMaximumCacheSize(maximumCacheSize);
    m_pool.setMaxThreadCount(simultaneousTransfers);
}

PictureLoader::~PictureLoader() {
    end();
}

void PictureLoader::end() {
    m_ends = true;
    m_pool.clear();
    m_pool.waitForDone();
}

QQuickImageResponse* PictureLoader::load(const QString& id, const QSize& size) {
    auto* response = new PictureResponse;
    const QUrl url = QUrl::fromEncoded(QByteArray::fromBase64(id.toLatin1(), addressEncoding));
    m_pool.start([this, url, size, link = response->link()] {
        // One that runs goes on to its end, so that the next to ask finds it on disk.
        link->deliver(m_ends || link->isCancelled ? QImage() : picture(url, size));
    });
    return response;
}

QImage PictureLoader::picture(const QUrl& url, QSize size) {
    const QByteArray bytes = bytesOf(url);
    const std::lock_guard lock(m_decoding);
    return bytes.isEmpty() ? QImage() : decode(bytes, size);
}

QByteArray PictureLoader::bytesOf(const QUrl& url) {
    QByteArray bytes = kept(url, false);
    if (bytes.isEmpty()) {
        bytes = fetched(url);
        if (bytes.isEmpty()) {
            return kept(url, true);
        }
        keep(url, bytes);
    }
    return bytes;
}

QByteArray PictureLoader::fetched(const QUrl& url) {
    constexpr int ok = 200;
    try {
        const URLResponse response = m_session->fetch(url, maximumPictureBytes, m_ends);
        QBuffer body;
        body.setData(QByteArray::fromStdString(response.body));
        body.open(QIODevice::ReadOnly);
        const bool isPicture = response.statusCode == ok && isRasterPicture(body);
        return isPicture ? body.data() : QByteArray();
    } catch (const std::exception& error) {
        AppLogger::network.debug("A picture could not be had: %s", {error.what()});
        return {};
    }
}

QByteArray PictureLoader::kept(const QUrl& url, bool evenIfOld) {
    const std::lock_guard lock(m_cacheMutex);
    const QNetworkCacheMetaData entry = m_cache->metaData(cacheKey(url));
    if (!entry.isValid() || (!evenIfOld && entry.expirationDate() < time())) {
        return {};
    }
    const std::unique_ptr<QIODevice> file(m_cache->data(cacheKey(url)));
    return file ? file->readAll() : QByteArray();
}

QDateTime PictureLoader::time() const {
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(secondsSince1970(m_now()) * 1000), Qt::UTC);
}

void PictureLoader::keep(const QUrl& url, const QByteArray& bytes) {
    QNetworkCacheMetaData entry;
    entry.setUrl(cacheKey(url));
    entry.setSaveToDisk(true);
    entry.setExpirationDate(time().addDays(daysKept));
    const std::lock_guard lock(m_cacheMutex);
    if (QIODevice* file = m_cache->prepare(entry)) {
        file->write(bytes);
        m_cache->insert(file);
    }
}

} // namespace ondavia
