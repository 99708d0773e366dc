#pragma once

#include "platform/linux/MessageBus.h"
#include "platform/linux/MprisPlayer.h"

#include <QFile>
#include <QObject>

#include <filesystem>
#include <memory>

namespace ondavia {

/// Shows the Now Playing centre on the session bus as a player of MPRIS, and hands on what is asked of it
/// there. Main thread; never waits for the bus. Where there is none, nothing happens.
class MprisService final : public QObject {
    Q_OBJECT

public:
    /// All but the folder must outlive the object. The folder holds the artwork while it is shown, for
    /// others to read: the bus never sees where it came from. What processes that are gone left there is
    /// removed.
    MprisService(MPNowPlayingInfoCenter& center, MPRemoteCommandCenter& commands, MessageBus& sessionBus,
                 std::filesystem::path artworkFolder);
    ~MprisService() override;

    /// Where playback stands, in seconds: told as often as it is known, so that whoever asks from outside
    /// hears of a jump whatever led to it.
    void follow(double position) { m_player.follow(position); }

private:
    using Artwork = std::shared_ptr<const MPMediaItemArtwork>;

    void appear(const QDBusConnection& bus);
    void takeName(const QString& name, const QString& otherwise);
    void changed();
    void publish();
    QCoro::Task<> showArtwork(Artwork artwork);

    MPNowPlayingInfoCenter& m_center;
    MPRemoteCommandCenter& m_commands;
    std::filesystem::path m_artworkFolder;
    MprisPlayer& m_player;
    std::optional<QDBusConnection> m_bus;
    QString m_name;
    QVariantMap m_published;
    Artwork m_artwork;
    std::shared_ptr<QFile> m_artworkFile;
};

} // namespace ondavia
