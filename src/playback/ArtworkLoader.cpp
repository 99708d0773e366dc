#include "playback/ArtworkLoader.h"

#include "platform/PoolWork.h"
#include "platform/RasterPicture.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>

namespace ondavia {

std::shared_ptr<const MPMediaItemArtwork> makeArtwork(const std::string& bytes) {
    const QByteArray encoded = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QBuffer source;
    source.setData(encoded);
    if (!source.open(QIODevice::ReadOnly) || !isRasterPicture(source)) {
        return nullptr;
    }
    QImageReader reader(&source);
    const QSize bound(ArtworkLoader::longestSide, ArtworkLoader::longestSide);
    if (const QSize full = reader.size(); std::max(full.width(), full.height()) > bound.width()) {
        reader.setScaledSize(full.scaled(bound, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    }
    const QImage image = reader.read();
    QBuffer png;
    if (image.isNull() || !png.open(QIODevice::WriteOnly) || !image.save(&png, "PNG")) {
        return nullptr;
    }
    return std::make_shared<MPMediaItemArtwork>(
        MPMediaItemArtwork{image.width(), image.height(), png.data().toStdString()});
}

QFuture<std::shared_ptr<const MPMediaItemArtwork>> ArtworkLoader::load(const QUrl& url) {
    cancel();
    m_isCancelled = std::make_shared<std::atomic_bool>(false);
    if (!m_session) {
        m_session = m_makeSession({});
        m_pool.setMaxThreadCount(1);
    }
    return runOnPool(
        [url, session = m_session, cancelled = m_isCancelled]() -> std::shared_ptr<const MPMediaItemArtwork> {
            if (*cancelled) {
                return nullptr;
            }
            try {
                return makeArtwork(session->fetch(url, maximumBytes, *cancelled).body);
            } catch (const URLError&) {
                // What plays has no artwork then, and that is all.
                return nullptr;
            }
        },
        m_pool);
}

} // namespace ondavia
