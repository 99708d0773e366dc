#pragma once

#include "base/PlaybackClock.h"
#include "platform/MPNowPlayingInfoCenter.h"
#include "platform/MPRemoteCommandCenter.h"

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QVariantMap>

namespace ondavia {

/// What plays, and what may be asked of it, in the words of MPRIS. Without an item nothing may be asked.
/// Rate and volume are not for others to set. Main thread.
class MprisPlayer final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ playbackStatus)
    Q_PROPERTY(double Rate READ rate)
    Q_PROPERTY(double MinimumRate READ minimumRate)
    Q_PROPERTY(double MaximumRate READ maximumRate)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(double Volume READ volume)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(bool CanGoNext READ canGoNext)
    Q_PROPERTY(bool CanGoPrevious READ canGoPrevious)
    Q_PROPERTY(bool CanPlay READ canPlay)
    Q_PROPERTY(bool CanPause READ canPause)
    Q_PROPERTY(bool CanSeek READ canSeek)
    Q_PROPERTY(bool CanControl READ canControl)

public:
    /// Both must outlive the object.
    MprisPlayer(const MPNowPlayingInfoCenter& center, const MPRemoteCommandCenter& commands, QObject* parent);

    [[nodiscard]] QString playbackStatus() const;
    /// That of the playing item, also while it is paused.
    [[nodiscard]] double rate() const { return m_rate; }
    [[nodiscard]] double minimumRate() const { return std::min(1.0, m_rate); }
    [[nodiscard]] double maximumRate() const { return std::max(1.0, m_rate); }
    [[nodiscard]] QVariantMap metadata() const;
    [[nodiscard]] double volume() const { return 1.0; }
    /// Microseconds.
    [[nodiscard]] qlonglong position() const;
    [[nodiscard]] bool canGoNext() const { return isOffered(m_commands.nextTrackCommand); }
    [[nodiscard]] bool canGoPrevious() const { return isOffered(m_commands.previousTrackCommand); }
    [[nodiscard]] bool canPlay() const { return isOffered(m_commands.playCommand); }
    [[nodiscard]] bool canPause() const { return isOffered(m_commands.pauseCommand); }
    [[nodiscard]] bool canSeek() const { return isOffered(m_commands.changePlaybackPositionCommand); }
    [[nodiscard]] bool canControl() const { return true; }

    Q_SLOT void Next() { ask(m_commands.nextTrackCommand); }
    Q_SLOT void Previous() { ask(m_commands.previousTrackCommand); }
    Q_SLOT void Play() { ask(m_commands.playCommand); }
    Q_SLOT void Pause() { ask(m_commands.pauseCommand); }
    Q_SLOT void PlayPause() { ask(m_commands.togglePlayPauseCommand); }
    /// There is nothing between paused and gone: whoever asks for silence gets it.
    Q_SLOT void Stop() { ask(m_commands.pauseCommand); }
    /// Microseconds, from where it stands; below 0 backward.
    Q_SLOT void Seek(qlonglong offset);
    /// Microseconds. Ignored for a track that plays no more.
    Q_SLOT void SetPosition(const QDBusObjectPath& track, qlonglong position);
    /// Playback went on elsewhere than time alone would have led it.
    Q_SIGNAL void Seeked(qlonglong position);

    /// Takes in what the centre says now.
    void takeInfo();
    /// Takes in where playback stands, in seconds.
    void follow(double position);
    /// Empty for none.
    void setArtworkUrl(const QString& url) { m_artworkUrl = url; }
    /// All properties that are told when they change, by their names.
    [[nodiscard]] QVariantMap told() const;

private:
    [[nodiscard]] bool isOffered(const MPRemoteCommand& command) const;
    void ask(const MPRemoteCommand& command, const MPRemoteCommandEvent& event = {}) const;
    [[nodiscard]] QDBusObjectPath track() const;

    const MPNowPlayingInfoCenter& m_center;
    const MPRemoteCommandCenter& m_commands;
    PlaybackClock m_clock;
    double m_rate = 1.0;
    bool m_hasItem = false;
    qulonglong m_trackNumber = 0;
    QString m_artworkUrl;
};

} // namespace ondavia
