#include "screens/browse/PictureNetwork.h"

#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QNetworkRequest>

namespace ondavia {

namespace {

/// Longest silence of a picture server, in milliseconds.
constexpr int transferTimeout = 20'000;

class PictureManager final : public QNetworkAccessManager {
public:
    using QNetworkAccessManager::QNetworkAccessManager;

protected:
    QNetworkReply* createRequest(Operation operation, const QNetworkRequest& original,
                                 QIODevice* data) override {
        QNetworkRequest request(original);
        request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::PreferCache);
        request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
        return QNetworkAccessManager::createRequest(operation, request, data);
    }
};

} // namespace

PictureNetwork::PictureNetwork(const std::filesystem::path& cacheFolder)
    : m_folder(QString::fromStdString((cacheFolder / "pictures").string())) {}

QNetworkAccessManager* PictureNetwork::create(QObject* parent) {
    auto* manager = new PictureManager(parent);
    auto* cache = new QNetworkDiskCache(manager);
    cache->setCacheDirectory(m_folder);
    cache->setMaximumCacheSize(maximumCacheSize);
    manager->setCache(cache);
    manager->setTransferTimeout(transferTimeout);
    manager->setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
    return manager;
}

} // namespace ondavia
