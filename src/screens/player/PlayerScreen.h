#pragma once

#include "base/Observable.h"
#include "screens/player/ControlsAutoHide.h"
#include "screens/player/InformationModel.h"
#include "screens/player/PlaybackChoices.h"
#include "screens/player/PlayerKeys.h"
#include "screens/player/PlayerLevels.h"
#include "screens/player/PlayerScreenServices.h"
#include "screens/player/SettingsSheetModel.h"

#include <QObject>
#include <QString>
#include <QtCore/qnamespace.h>
#include <qqmlregistration.h>

#include <memory>

namespace ondavia {

struct Channel;

/// What the full-screen players have in common: whose picture they show and how that stands, the controls
/// and layers over it, and the ways out. Main thread.
class PlayerScreen : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the presentation")
    /// Whose engine is shown.
    Q_PROPERTY(QObject* manager READ managerObject CONSTANT)
    Q_PROPERTY(ondavia::ControlsAutoHide* controls READ controls CONSTANT)
    Q_PROPERTY(ondavia::PlayerLevels* levels READ levels CONSTANT)
    Q_PROPERTY(ondavia::PlayerKeys* keys READ keys CONSTANT)
    Q_PROPERTY(ondavia::InformationModel* information READ information CONSTANT)
    /// The sheet that was opened last; null before the first time.
    Q_PROPERTY(ondavia::SettingsSheetModel* sheet READ sheet NOTIFY sheetChanged)
    /// A channel, not a film or an episode.
    Q_PROPERTY(bool isLive READ isLive CONSTANT)
    Q_PROPERTY(QString title READ title NOTIFY itemChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY stateChanged)
    /// The engine has to wait for data, before the first picture or in the middle.
    Q_PROPERTY(bool isBuffering READ isBuffering NOTIFY stateChanged)
    /// It has waited long for its first picture.
    Q_PROPERTY(bool isSlow READ isSlow NOTIFY isSlowChanged)
    Q_PROPERTY(bool isMuted READ isMuted NOTIFY stateChanged)
    /// What went wrong, in words; empty when nothing did.
    Q_PROPERTY(QString error READ error NOTIFY stateChanged)
    Q_PROPERTY(bool showSettings READ showSettings NOTIFY showSettingsChanged)
    Q_PROPERTY(bool showKeys READ showKeys WRITE setShowKeys NOTIFY showKeysChanged)

    ONDAVIA_OBSERVABLE(bool, showSettings, setShowSettings, false);
    ONDAVIA_OBSERVABLE(bool, showKeys, setShowKeys, false);
    ONDAVIA_OBSERVABLE(bool, isSlow, setIsSlow, false);

public:
    static constexpr double secondsUntilSlow = 10.0;

    ~PlayerScreen() override;

    /// The steps of coming into sight and of going out of it.
    virtual void appear() = 0;
    void disappear();

    [[nodiscard]] QObject* managerObject() const;
    [[nodiscard]] ControlsAutoHide* controls() { return &m_controls; }
    [[nodiscard]] PlayerLevels* levels() { return &m_levels; }
    [[nodiscard]] PlayerKeys* keys() { return &m_keys; }
    [[nodiscard]] InformationModel* information() { return &m_information; }
    [[nodiscard]] SettingsSheetModel* sheet() const { return m_sheet.get(); }
    [[nodiscard]] PlaybackChoices& choices() { return m_choices; }
    [[nodiscard]] const PlaybackChoices& choices() const { return m_choices; }

    [[nodiscard]] bool isLive() const { return m_kind == SettingsSheetModel::Kind::Live; }
    /// What is shown, in words.
    [[nodiscard]] virtual QString title() const = 0;
    [[nodiscard]] bool isPlaying() const;
    [[nodiscard]] bool isBuffering() const;
    [[nodiscard]] bool isMuted() const;
    [[nodiscard]] QString error() const;

    Q_INVOKABLE void togglePlayPause();
    Q_INVOKABLE void toggleMute();
    /// Plays the item again, from its beginning.
    Q_INVOKABLE virtual void retry() = 0;
    Q_INVOKABLE virtual void minimizeToMini();
    Q_INVOKABLE void openSettings();
    Q_INVOKABLE void closeSettings() { setShowSettings(false); }
    /// Takes the uppermost layer away; false when there is none over the picture.
    Q_INVOKABLE virtual bool closeLayer();
    /// Leaves the player.
    Q_INVOKABLE void close() { Q_EMIT dismissed(); }
    /// A key or a button wants the picture to fill the screen, or no longer.
    Q_INVOKABLE virtual void toggleFullScreen() { Q_EMIT fullScreenToggled(); }

    Q_SIGNAL void sheetChanged();
    Q_SIGNAL void itemChanged();
    Q_SIGNAL void stateChanged();
    Q_SIGNAL void fullScreenToggled();
    Q_SIGNAL void dismissed();
    /// The leaving steps are done.
    Q_SIGNAL void disappeared();

protected:
    static constexpr Qt::ScreenOrientations portrait{Qt::PortraitOrientation};
    static constexpr Qt::ScreenOrientations landscape{Qt::LandscapeOrientation,
                                                      Qt::InvertedLandscapeOrientation};

    PlayerScreen(const PlayerScreenServices& services, SettingsSheetModel::Kind kind);

    [[nodiscard]] const PlayerScreenServices& services() const { return m_services; }
    /// The steps of going out of sight that are this player's own.
    virtual void leave() = 0;
    /// Whether something among the controls is held, besides the levels.
    [[nodiscard]] virtual bool isHeld() const { return false; }
    /// Whether `item` plays in the mini player, which then gives it back to this one.
    [[nodiscard]] bool takesOver(const Channel& item);
    /// Ends playback and session, unless they go on in the mini player.
    void endSession();

private:
    void watchWaiting();

    PlayerScreenServices m_services;
    SettingsSheetModel::Kind m_kind;
    PlaybackChoices m_choices;
    PlayerLevels m_levels;
    ControlsAutoHide m_controls;
    InformationModel m_information;
    PlayerKeys m_keys;
    std::unique_ptr<SettingsSheetModel> m_sheet;
    std::unique_ptr<ScheduledTimer> m_patience;
};

} // namespace ondavia
