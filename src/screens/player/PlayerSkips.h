#pragma once

#include "base/Observable.h"
#include "platform/Scheduler.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

#include <cstdint>
#include <memory>

namespace ondavia {

class PlaybackChoices;
class PlayerManager;

/// Steps through a film: by the two buttons, and by double taps and keys, which say in a badge how far a
/// burst of them has gone. Main thread.
class PlayerSkips final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the player")
    Q_PROPERTY(int skipInterval READ skipInterval NOTIFY skipIntervalChanged)
    Q_PROPERTY(QString backSymbol READ backSymbol NOTIFY skipIntervalChanged)
    Q_PROPERTY(QString forwardSymbol READ forwardSymbol NOTIFY skipIntervalChanged)
    /// "forward" or "backward" while the badge shows, else empty.
    Q_PROPERTY(QString seekDirection READ seekDirection NOTIFY badgeChanged)
    Q_PROPERTY(int badgeSeconds READ badgeSeconds NOTIFY badgeChanged)
    Q_PROPERTY(QString badgeSymbol READ badgeSymbol NOTIFY badgeChanged)

public:
    /// From the last step of a burst to its end.
    static constexpr double burstSeconds = 0.8;

    /// All must outlive the object.
    PlayerSkips(PlayerManager& manager, const PlaybackChoices& choices, Scheduler& scheduler);

    [[nodiscard]] int skipInterval() const;
    [[nodiscard]] QString backSymbol() const { return skipSymbol(skipInterval(), false); }
    [[nodiscard]] QString forwardSymbol() const { return skipSymbol(skipInterval(), true); }
    [[nodiscard]] const QString& seekDirection() const { return m_seekDirection; }
    /// Seconds of the running burst.
    [[nodiscard]] double accumulatedSeek() const { return m_accumulatedSeek; }
    [[nodiscard]] int badgeSeconds() const { return static_cast<int>(m_accumulatedSeek); }
    [[nodiscard]] QString badgeSymbol() const;

    /// The buttons' steps: not past the beginning, and none at all past the end.
    Q_INVOKABLE void back();
    Q_INVOKABLE void forward();
    /// A double tap at `location` of a picture `width` wide.
    Q_INVOKABLE void handleDoubleTapSeek(double location, double width);
    /// A key's step, as far as a double tap's and with the same badge.
    void step(bool forwards);

    /// The symbol of a skip by as many seconds: the nearest one of those that exist.
    [[nodiscard]] static QString skipSymbol(std::int64_t seconds, bool forward);

    Q_SIGNAL void skipIntervalChanged();
    Q_SIGNAL void badgeChanged();

private:
    void endBurst();

    PlayerManager& m_manager;
    const PlaybackChoices& m_choices;
    Scheduler& m_scheduler;
    QString m_seekDirection;
    double m_accumulatedSeek = 0;
    std::unique_ptr<ScheduledTimer> m_seekDismissTimer;
};

} // namespace ondavia
