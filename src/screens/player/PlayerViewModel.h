#pragma once

#include "entities/Channel.h"
#include "screens/player/PlayerScreen.h"
#include "screens/player/PlayerSkips.h"
#include "screens/player/SubtitleOverlayModel.h"
#include "screens/player/VODSeekBarModel.h"
#include "screens/player/VideoTaps.h"

#include <QString>
#include <qqmlregistration.h>

namespace ondavia {

/// The full-screen player of one film or episode, from its start to the viewer's leaving: has the manager
/// play the item where it was left, keeps the history up to date, steps through a series, and hands over to
/// the mini player. Main thread.
// With its namespace, by which QML knows the base.
class PlayerViewModel final : public ondavia::PlayerScreen {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the presentation")
    Q_PROPERTY(ondavia::PlayerSkips* skips READ skips CONSTANT)
    Q_PROPERTY(ondavia::VODSeekBarModel* seekBar READ seekBar CONSTANT)
    Q_PROPERTY(ondavia::VideoTaps* taps READ taps CONSTANT)
    Q_PROPERTY(ondavia::SubtitleOverlayModel* subtitles READ subtitles CONSTANT)
    Q_PROPERTY(QString episodeLine READ episodeLine NOTIFY itemChanged)
    Q_PROPERTY(bool offersNextEpisode READ offersNextEpisode NOTIFY itemChanged)
    /// Empty at normal speed.
    Q_PROPERTY(QString speedText READ speedText NOTIFY speedTextChanged)

public:
    PlayerViewModel(const PlayerScreenServices& services, Channel channel);
    ~PlayerViewModel() override;

    void appear() override;

    [[nodiscard]] PlayerSkips* skips() { return &m_skips; }
    [[nodiscard]] VODSeekBarModel* seekBar() { return &m_seekBar; }
    [[nodiscard]] VideoTaps* taps() { return &m_taps; }
    [[nodiscard]] SubtitleOverlayModel* subtitles() { return &m_subtitles; }
    /// What the view plays; after a step to the next episode, that one.
    [[nodiscard]] const Channel& channel() const { return m_channel; }
    /// Where the item was left, in seconds.
    [[nodiscard]] double startPosition() const { return m_startPosition; }

    [[nodiscard]] QString title() const override;
    [[nodiscard]] QString episodeLine() const;
    [[nodiscard]] bool hasNextEpisode() const;
    [[nodiscard]] bool offersNextEpisode() const { return m_channel.type == "series" && hasNextEpisode(); }
    [[nodiscard]] QString speedText() const;

    /// Records how far the item has been watched, beyond its first 10 seconds.
    void saveProgress();
    void retry() override;
    /// Does nothing where there is none.
    Q_INVOKABLE void playNextEpisode();
    void minimizeToMini() override;

    Q_SIGNAL void speedTextChanged();

private:
    void leave() override;
    [[nodiscard]] bool isHeld() const override { return m_seekBar.isSeeking(); }
    void connectFields();
    void bindKeys();
    void followSession();
    void setupAndPlay();
    void recordProgressOf(const Channel& channel);

    Channel m_channel;
    double m_startPosition = 0;
    PlayerSkips m_skips;
    VODSeekBarModel m_seekBar;
    VideoTaps m_taps;
    SubtitleOverlayModel m_subtitles;
};

} // namespace ondavia
