#pragma once

#include <QQmlNetworkAccessManagerFactory>
#include <QString>

#include <filesystem>

namespace ondavia {

/// Gives the engine network access for pictures: kept on disk between runs, asked for again only when the
/// server's own word says so, and without cookies. Called on the engine's loader threads.
class PictureNetwork final : public QQmlNetworkAccessManagerFactory {
public:
    /// Largest size of the cache, in bytes.
    static constexpr qint64 maximumCacheSize = qint64{256} << 20;

    explicit PictureNetwork(const std::filesystem::path& cacheFolder);

    QNetworkAccessManager* create(QObject* parent) override;

private:
    QString m_folder;
};

} // namespace ondavia
