#pragma once

#include "platform/Scheduler.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

#include <memory>

namespace ondavia {

class AppState;
class ContentViewModel;
class PlayerManager;

/// The full-screen player: starts what the open session holds when it is presented, ends it when it goes
/// away, and decides when its controls show. Times in seconds. Main thread.
class PlayerViewModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(QString title READ title NOTIFY itemChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY itemChanged)
    Q_PROPERTY(bool isLive READ isLive NOTIFY itemChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY stateChanged)
    Q_PROPERTY(bool isBuffering READ isBuffering NOTIFY stateChanged)
    Q_PROPERTY(bool isMuted READ isMuted NOTIFY stateChanged)
    /// What went wrong, in words; empty when nothing did.
    Q_PROPERTY(QString error READ error NOTIFY stateChanged)
    Q_PROPERTY(bool canSeek READ canSeek NOTIFY timeChanged)
    Q_PROPERTY(double position READ position NOTIFY timeChanged)
    Q_PROPERTY(double duration READ duration NOTIFY timeChanged)
    Q_PROPERTY(QString positionText READ positionText NOTIFY timeChanged)
    Q_PROPERTY(QString durationText READ durationText NOTIFY timeChanged)
    Q_PROPERTY(bool showsControls READ showsControls NOTIFY showsControlsChanged)

public:
    static constexpr double secondsUntilControlsHide = 5.0;

    /// All must outlive the object.
    PlayerViewModel(AppState& appState, PlayerManager& manager, ContentViewModel& content,
                    Scheduler& scheduler, QObject* parent = nullptr);

    [[nodiscard]] PlayerManager& manager() const { return m_manager; }
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString subtitle() const;
    [[nodiscard]] bool isLive() const;
    [[nodiscard]] bool isPlaying() const;
    [[nodiscard]] bool isBuffering() const;
    [[nodiscard]] bool isMuted() const;
    [[nodiscard]] QString error() const;
    [[nodiscard]] bool canSeek() const;
    [[nodiscard]] double position() const;
    [[nodiscard]] double duration() const;
    [[nodiscard]] QString positionText() const;
    [[nodiscard]] QString durationText() const;
    [[nodiscard]] bool showsControls() const { return m_showsControls; }

    /// Ends the session and the presentation.
    Q_INVOKABLE void leave();
    /// Plays the session's item again from its beginning.
    Q_INVOKABLE void retry();
    Q_INVOKABLE void togglePlayPause();
    Q_INVOKABLE void toggleMute();
    Q_INVOKABLE void seek(double seconds);
    /// Shows the controls, and for another 5 seconds if they show already. They stay while nothing plays.
    Q_INVOKABLE void wakeControls();
    Q_INVOKABLE void toggleControls();

    Q_SIGNAL void itemChanged();
    Q_SIGNAL void stateChanged();
    Q_SIGNAL void timeChanged();
    Q_SIGNAL void showsControlsChanged();

private:
    void connectFields();
    void presentationChanged();
    void hideControls();
    void setShowsControls(bool shows);
    void stopUnlessMini();

    AppState& m_appState;
    PlayerManager& m_manager;
    ContentViewModel& m_content;
    Scheduler& m_scheduler;
    std::unique_ptr<ScheduledTimer> m_hideTimer;
    bool m_isPresented = false;
    bool m_showsControls = true;
};

/// A time as a clock shows it: 5:07, or 1:05:07 from an hour on. What is no time shows as 0:00.
[[nodiscard]] QString clockText(double seconds);

} // namespace ondavia
