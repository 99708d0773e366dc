#include "platform/linux/MprisPlayer.h"

#include "base/VisibleText.h"

#include <QMetaProperty>
#include <QStringList>

#include <cmath>

namespace ondavia {
namespace {

constexpr double microseconds = 1'000'000;

PlaybackClock::Time now() {
    return PlaybackClock::Time::clock::now();
}

qlonglong inMicroseconds(double seconds) {
    constexpr double longest = 1e12;
    return std::llround(std::min(seconds, longest) * microseconds);
}

/// A provider's words, which others may print on a terminal.
QString shown(const std::string& text) {
    return QString::fromStdString(visibleText(text));
}

} // namespace

MprisPlayer::MprisPlayer(const MPNowPlayingInfoCenter& center, const MPRemoteCommandCenter& commands,
                         QObject* parent)
    : QDBusAbstractAdaptor(parent)
    , m_center(center)
    , m_commands(commands) {
    takeInfo();
}

QString MprisPlayer::playbackStatus() const {
    const auto& info = m_center.nowPlayingInfo();
    return !info                    ? QStringLiteral("Stopped")
           : info->playbackRate > 0 ? QStringLiteral("Playing")
                                    : QStringLiteral("Paused");
}

QDBusObjectPath MprisPlayer::track() const {
    return QDBusObjectPath(QStringLiteral("/com/ondavia/track/%1").arg(m_trackNumber));
}

/// Never an address: those of the provider hold the account.
QVariantMap MprisPlayer::metadata() const {
    const auto& info = m_center.nowPlayingInfo();
    if (!info) {
        return {};
    }
    QVariantMap data{{QStringLiteral("mpris:trackid"), QVariant::fromValue(track())},
                     {QStringLiteral("xesam:title"), shown(info->title)}};
    if (info->artist) {
        data.insert(QStringLiteral("xesam:artist"), QStringList{shown(*info->artist)});
    }
    if (info->playbackDuration) {
        data.insert(QStringLiteral("mpris:length"), inMicroseconds(*info->playbackDuration));
    }
    if (!m_artworkUrl.isEmpty()) {
        data.insert(QStringLiteral("mpris:artUrl"), m_artworkUrl);
    }
    return data;
}

qlonglong MprisPlayer::position() const {
    const auto& info = m_center.nowPlayingInfo();
    if (!info || !info->elapsedPlaybackTime) {
        return 0;
    }
    const double reached = std::max(0.0, m_clock.position(now()));
    return inMicroseconds(info->playbackDuration ? std::min(reached, *info->playbackDuration) : reached);
}

void MprisPlayer::Seek(qlonglong offset) {
    const double seconds = static_cast<double>(offset) / microseconds;
    ask(offset < 0 ? m_commands.skipBackwardCommand : m_commands.skipForwardCommand,
        MPSkipIntervalCommandEvent{std::abs(seconds)});
}

void MprisPlayer::SetPosition(const QDBusObjectPath& wanted, qlonglong position) {
    if (wanted == track()) {
        ask(m_commands.changePlaybackPositionCommand,
            MPChangePlaybackPositionCommandEvent{static_cast<double>(position) / microseconds});
    }
}

void MprisPlayer::takeInfo() {
    const auto& info = m_center.nowPlayingInfo();
    const bool isNew = info && !m_hasItem;
    m_hasItem = info.has_value();
    if (!info) {
        m_clock = {};
        m_rate = 1.0;
        return;
    }
    m_trackNumber += isNew ? 1 : 0;
    m_rate = info->playbackRate > 0 ? info->playbackRate : m_rate;
    if (info->elapsedPlaybackTime) {
        follow(*info->elapsedPlaybackTime);
    }
    m_clock.run(info->playbackRate, now());
}

void MprisPlayer::follow(double position) {
    const auto& info = m_center.nowPlayingInfo();
    if (!info || !info->elapsedPlaybackTime) {
        return;
    }
    const bool isJump = std::abs(position - m_clock.position(now())) > PlaybackClock::slack;
    m_clock.report(position, now());
    if (isJump) {
        Q_EMIT Seeked(inMicroseconds(position));
    }
}

QVariantMap MprisPlayer::told() const {
    QVariantMap values;
    const QMetaObject& type = staticMetaObject;
    for (int index = type.propertyOffset(); index < type.propertyCount(); ++index) {
        const QMetaProperty property = type.property(index);
        values.insert(QString::fromLatin1(property.name()), property.read(this));
    }
    // Whoever shows it counts on by itself.
    values.remove(QStringLiteral("Position"));
    return values;
}

bool MprisPlayer::isOffered(const MPRemoteCommand& command) const {
    return m_center.nowPlayingInfo() && command.isEnabled();
}

void MprisPlayer::ask(const MPRemoteCommand& command, const MPRemoteCommandEvent& event) const {
    if (isOffered(command)) {
        (void)command.send(event);
    }
}

} // namespace ondavia
