#pragma once

#include "platform/Scheduler.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

#include <memory>

namespace ondavia {

class PlayerManager;

/// The line of the external subtitles that shows now, where the screens draw it instead of the engine: looked
/// up ten times a second, whatever the engine reports. Main thread.
class SubtitleOverlayModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the player")
    Q_PROPERTY(bool isShown READ isShown NOTIFY isShownChanged)
    /// Empty when no line covers the time.
    Q_PROPERTY(QString activeText READ activeText NOTIFY activeTextChanged)

public:
    static constexpr double tickSeconds = 0.1;

    /// Both must outlive the object.
    SubtitleOverlayModel(const PlayerManager& manager, Scheduler& scheduler);

    [[nodiscard]] bool isShown() const;
    [[nodiscard]] const QString& activeText() const { return m_activeText; }

    Q_SIGNAL void isShownChanged();
    Q_SIGNAL void activeTextChanged();

private:
    void modeChanged();
    void tick();

    const PlayerManager& m_manager;
    Scheduler& m_scheduler;
    std::unique_ptr<ScheduledTimer> m_timeline;
    QString m_activeText;
};

} // namespace ondavia
