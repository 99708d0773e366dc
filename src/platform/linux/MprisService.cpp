#include "platform/linux/MprisService.h"

#include "platform/PoolWork.h"
#include "platform/linux/MprisRoot.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDir>
#include <QPointer>
#include <QTemporaryFile>
#include <QUrl>

#include <cerrno>
#include <csignal>
#include <qcoro/qcorofuture.h>
#include <system_error>

namespace ondavia {
namespace {

const QString objectPath = QStringLiteral("/org/mpris/MediaPlayer2");

QDBusMessage busCall(const QString& method) {
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                          QStringLiteral("/org/freedesktop/DBus"),
                                          QStringLiteral("org.freedesktop.DBus"), method);
}

/// Where this process keeps its artworks: by its number, so that those of one that crashed are known.
std::filesystem::path ownFolder(const std::filesystem::path& folder) {
    return folder / std::to_string(QCoreApplication::applicationPid());
}

bool isOfLivingProcess(const QString& name) {
    const int process = name.toInt();
    return process > 0 && (::kill(process, 0) == 0 || errno == EPERM);
}

void removeLeftovers(const std::filesystem::path& folder) {
    const QDir place(QString::fromStdString(folder.string()));
    for (const QString& name : place.entryList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
        std::error_code ignored;
        if (!isOfLivingProcess(name)) {
            std::filesystem::remove_all(folder / name.toStdString(), ignored);
        }
    }
}

/// A file that goes when nobody holds it any more; null when it could not be written.
std::shared_ptr<QFile> write(const MPMediaItemArtwork& artwork, const std::filesystem::path& folder) {
    const QString place = QString::fromStdString(ownFolder(folder).string());
    auto file = std::make_shared<QTemporaryFile>(place + QStringLiteral("/XXXXXX.png"));
    const auto size = static_cast<qint64>(artwork.png.size());
    const bool isWritten = QDir().mkpath(place) && file->open() &&
                           file->write(artwork.png.data(), size) == size && file->flush();
    return isWritten ? file : nullptr;
}

} // namespace

MprisService::MprisService(MPNowPlayingInfoCenter& center, MPRemoteCommandCenter& commands,
                           MessageBus& sessionBus, std::filesystem::path artworkFolder)
    : m_center(center)
    , m_commands(commands)
    , m_artworkFolder(std::move(artworkFolder))
    , m_player(*new MprisPlayer(center, commands, this)) {
    new MprisRoot(this);
    m_center.setOnChange([this] { changed(); });
    m_commands.setOnChange([this] { publish(); });
    sessionBus.whenThere(this, [this](const QDBusConnection& bus) { appear(bus); });
}

MprisService::~MprisService() {
    m_center.setOnChange({});
    m_commands.setOnChange({});
    if (m_bus) {
        m_bus->unregisterObject(objectPath);
        QDBusMessage release = busCall(QStringLiteral("ReleaseName"));
        release << m_name;
        (void)m_bus->send(release);
    }
}

void MprisService::appear(const QDBusConnection& bus) {
    m_bus = bus;
    m_bus->registerObject(objectPath, this);
    m_published = m_player.told();
    const QString name = QStringLiteral("org.mpris.MediaPlayer2.ondavia");
    takeName(name, name + QStringLiteral(".instance%1").arg(QCoreApplication::applicationPid()));
}

/// Asks for `name`, and for the other one where somebody has that.
void MprisService::takeName(const QString& name, const QString& otherwise) {
    constexpr uint doNotQueue = 4;
    constexpr uint taken = 3;
    m_name = name;
    QDBusMessage request = busCall(QStringLiteral("RequestName"));
    request << name << doNotQueue;
    auto* watcher = new QDBusPendingCallWatcher(m_bus->asyncCall(request), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, otherwise] {
        watcher->deleteLater();
        const QDBusPendingReply<uint> reply = *watcher;
        if (reply.isValid() && reply.value() == taken && !otherwise.isEmpty()) {
            takeName(otherwise, {});
        }
    });
}

void MprisService::changed() {
    m_player.takeInfo();
    const Artwork artwork = m_center.nowPlayingInfo() ? m_center.nowPlayingInfo()->artwork : nullptr;
    if (artwork != m_artwork) {
        m_artwork = artwork;
        m_artworkFile.reset();
        m_player.setArtworkUrl({});
        if (artwork) {
            // It ends by itself, and looks whether this is still there.
            (void)showArtwork(artwork);
        }
    }
    publish();
}

QCoro::Task<> MprisService::showArtwork(Artwork artwork) {
    const QPointer<MprisService> self(this);
    const auto writing = runOnPool([artwork, folder = m_artworkFolder] {
        removeLeftovers(folder);
        return write(*artwork, folder);
    });
    const std::shared_ptr<QFile> file = co_await writing;
    if (self && file && m_artwork == artwork) {
        m_artworkFile = file;
        m_player.setArtworkUrl(QUrl::fromLocalFile(file->fileName()).toString(QUrl::FullyEncoded));
        publish();
    }
}

void MprisService::publish() {
    if (!m_bus) {
        return;
    }
    QVariantMap changes;
    const QVariantMap values = m_player.told();
    for (auto value = values.begin(); value != values.end(); ++value) {
        if (m_published.value(value.key()) != value.value()) {
            changes.insert(value.key(), value.value());
        }
    }
    if (changes.isEmpty()) {
        return;
    }
    m_published = values;
    QDBusMessage signal = QDBusMessage::createSignal(
        objectPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"));
    signal << QStringLiteral("org.mpris.MediaPlayer2.Player") << changes << QStringList();
    (void)m_bus->send(signal);
}

} // namespace ondavia
