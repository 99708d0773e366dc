#pragma once

#include "base/Observable.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace ondavia {

class PlayerManager;

/// The position in a film, and where a finger on the bar wants it: the film follows when the finger is
/// lifted. Times in seconds. Main thread.
class VODSeekBarModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the player")
    Q_PROPERTY(bool isSeeking READ isSeeking NOTIFY isSeekingChanged)
    /// There is a length to draw.
    Q_PROPERTY(bool isDrawn READ isDrawn NOTIFY changed)
    /// How much of the bar is filled, up to 1.0.
    Q_PROPERTY(double fraction READ fraction NOTIFY changed)
    Q_PROPERTY(QString positionText READ positionText NOTIFY changed)
    Q_PROPERTY(QString durationText READ durationText NOTIFY changed)

    ONDAVIA_OBSERVABLE(bool, isSeeking, setIsSeeking, false);
    ONDAVIA_OBSERVABLE(double, seekTarget, setSeekTarget, 0.0);

public:
    /// `manager` must outlive the object.
    explicit VODSeekBarModel(PlayerManager& manager);

    [[nodiscard]] bool isDrawn() const;
    [[nodiscard]] double shownTime() const;
    [[nodiscard]] double fraction() const;
    [[nodiscard]] QString positionText() const { return formatTime(shownTime()); }
    [[nodiscard]] QString durationText() const;

    /// A finger at `location` of a bar `width` wide.
    Q_INVOKABLE void drag(double location, double width);
    /// The finger is lifted there: the film goes to that place.
    Q_INVOKABLE void endDrag(double location, double width);
    /// The drag was taken away: the film stays where it is.
    Q_INVOKABLE void cancelDrag() { setIsSeeking(false); }

    /// A finite time as a clock shows it: 05:07, or 1:05:07 from an hour on.
    [[nodiscard]] static QString formatTime(double seconds);

    Q_SIGNAL void changed();

private:
    [[nodiscard]] double timeAt(double location, double width) const;

    PlayerManager& m_manager;
};

} // namespace ondavia
