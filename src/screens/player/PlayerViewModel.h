#pragma once

#include "base/Observable.h"
#include "entities/Channel.h"
#include "screens/player/ControlsAutoHide.h"
#include "screens/player/InformationModel.h"
#include "screens/player/PlaybackChoices.h"
#include "screens/player/PlayerKeys.h"
#include "screens/player/PlayerLevels.h"
#include "screens/player/PlayerScreenServices.h"
#include "screens/player/PlayerSkips.h"
#include "screens/player/SettingsSheetModel.h"
#include "screens/player/SubtitleOverlayModel.h"
#include "screens/player/VODSeekBarModel.h"
#include "screens/player/VideoTaps.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

#include <memory>

namespace ondavia {

/// The full-screen player of one session, from its start to the viewer's leaving: has the manager play the
/// item where it was left, keeps the history up to date, steps through a series, and hands over to the mini
/// player. A live channel is played too, without history and seeking. Main thread.
class PlayerViewModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the presentation")
    /// Whose engine is shown.
    Q_PROPERTY(QObject* manager READ managerObject CONSTANT)
    Q_PROPERTY(ondavia::ControlsAutoHide* controls READ controls CONSTANT)
    Q_PROPERTY(ondavia::PlayerLevels* levels READ levels CONSTANT)
    Q_PROPERTY(ondavia::PlayerSkips* skips READ skips CONSTANT)
    Q_PROPERTY(ondavia::VODSeekBarModel* seekBar READ seekBar CONSTANT)
    Q_PROPERTY(ondavia::VideoTaps* taps READ taps CONSTANT)
    Q_PROPERTY(ondavia::PlayerKeys* keys READ keys CONSTANT)
    Q_PROPERTY(ondavia::SubtitleOverlayModel* subtitles READ subtitles CONSTANT)
    Q_PROPERTY(ondavia::InformationModel* information READ information CONSTANT)
    /// The sheet that was opened last; null before the first time.
    Q_PROPERTY(ondavia::SettingsSheetModel* sheet READ sheet NOTIFY sheetChanged)
    Q_PROPERTY(QString title READ title NOTIFY itemChanged)
    Q_PROPERTY(QString episodeLine READ episodeLine NOTIFY itemChanged)
    Q_PROPERTY(bool isLive READ isLive NOTIFY itemChanged)
    Q_PROPERTY(bool offersNextEpisode READ offersNextEpisode NOTIFY itemChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY stateChanged)
    /// The engine has to wait for data, before the first picture or in the middle.
    Q_PROPERTY(bool isBuffering READ isBuffering NOTIFY stateChanged)
    Q_PROPERTY(bool isMuted READ isMuted NOTIFY stateChanged)
    /// What went wrong, in words; empty when nothing did.
    Q_PROPERTY(QString error READ error NOTIFY stateChanged)
    /// Empty at normal speed.
    Q_PROPERTY(QString speedText READ speedText NOTIFY speedTextChanged)
    Q_PROPERTY(bool showSettings READ showSettings NOTIFY showSettingsChanged)
    Q_PROPERTY(bool showKeys READ showKeys WRITE setShowKeys NOTIFY showKeysChanged)

    ONDAVIA_OBSERVABLE(bool, showSettings, setShowSettings, false);
    ONDAVIA_OBSERVABLE(bool, showKeys, setShowKeys, false);

public:
    PlayerViewModel(const PlayerScreenServices& services, Channel channel);
    ~PlayerViewModel() override;

    /// The steps of coming into sight and of going out of it.
    void appear();
    void disappear();

    [[nodiscard]] QObject* managerObject() const;
    [[nodiscard]] ControlsAutoHide* controls() { return &m_controls; }
    [[nodiscard]] PlayerLevels* levels() { return &m_levels; }
    [[nodiscard]] PlayerSkips* skips() { return &m_skips; }
    [[nodiscard]] VODSeekBarModel* seekBar() { return &m_seekBar; }
    [[nodiscard]] VideoTaps* taps() { return &m_taps; }
    [[nodiscard]] PlayerKeys* keys() { return &m_keys; }
    [[nodiscard]] SubtitleOverlayModel* subtitles() { return &m_subtitles; }
    [[nodiscard]] InformationModel* information() { return &m_information; }
    [[nodiscard]] SettingsSheetModel* sheet() const { return m_sheet.get(); }
    [[nodiscard]] PlaybackChoices& choices() { return m_choices; }
    /// What the view plays; after a step to the next episode, that one.
    [[nodiscard]] const Channel& channel() const { return m_channel; }
    /// Where the item was left, in seconds.
    [[nodiscard]] double startPosition() const { return m_startPosition; }

    [[nodiscard]] QString title() const;
    [[nodiscard]] QString episodeLine() const;
    [[nodiscard]] bool isLive() const { return m_channel.type == "live"; }
    [[nodiscard]] bool hasNextEpisode() const;
    [[nodiscard]] bool offersNextEpisode() const { return m_channel.type == "series" && hasNextEpisode(); }
    [[nodiscard]] bool isPlaying() const;
    [[nodiscard]] bool isBuffering() const;
    [[nodiscard]] bool isMuted() const;
    [[nodiscard]] QString error() const;
    [[nodiscard]] QString speedText() const;

    /// Records how far the item has been watched, beyond its first 10 seconds.
    void saveProgress();
    Q_INVOKABLE void togglePlayPause();
    Q_INVOKABLE void toggleMute();
    /// Plays the item again, from its beginning.
    Q_INVOKABLE void retry();
    /// Does nothing where there is none.
    Q_INVOKABLE void playNextEpisode();
    Q_INVOKABLE void minimizeToMini();
    Q_INVOKABLE void openSettings();
    Q_INVOKABLE void closeSettings() { setShowSettings(false); }
    /// Takes the uppermost layer away; false when there is none over the picture.
    Q_INVOKABLE bool closeLayer();
    /// Leaves the player.
    Q_INVOKABLE void close() { Q_EMIT dismissed(); }
    /// A key or a button wants the window to fill the screen, or no longer.
    Q_INVOKABLE void toggleFullScreen() { Q_EMIT fullScreenToggled(); }

    Q_SIGNAL void sheetChanged();
    Q_SIGNAL void itemChanged();
    Q_SIGNAL void stateChanged();
    Q_SIGNAL void speedTextChanged();
    Q_SIGNAL void fullScreenToggled();
    Q_SIGNAL void dismissed();
    /// The leaving steps are done.
    Q_SIGNAL void disappeared();

private:
    void connectFields();
    void followSession();
    void setupAndPlay();
    void recordProgressOf(const Channel& channel);

    PlayerScreenServices m_services;
    Channel m_channel;
    double m_startPosition = 0;
    PlaybackChoices m_choices;
    PlayerLevels m_levels;
    ControlsAutoHide m_controls;
    PlayerSkips m_skips;
    VODSeekBarModel m_seekBar;
    VideoTaps m_taps;
    SubtitleOverlayModel m_subtitles;
    InformationModel m_information;
    PlayerKeys m_keys;
    std::unique_ptr<SettingsSheetModel> m_sheet;
};

} // namespace ondavia
