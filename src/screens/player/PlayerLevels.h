#pragma once

#include "base/Observable.h"
#include "platform/Scheduler.h"
#include "screens/player/SliderButtonModel.h"

#include <QObject>
#include <qqmlregistration.h>

#include <memory>

namespace ondavia {

class AVAudioSession;
class ScreenBrightness;
class SystemVolumeHelper;

/// The screen's brightness and the device's volume, each mirrored from the system and set by the viewer, from
/// 0.0 to 1.0. Main thread.
class PlayerLevels final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the player")
    Q_PROPERTY(ondavia::SliderButtonModel* brightness READ brightness CONSTANT)
    Q_PROPERTY(ondavia::SliderButtonModel* volume READ volume CONSTANT)
    /// For a second after a key or the wheel has changed the volume.
    Q_PROPERTY(bool showVolumeBadge READ showVolumeBadge NOTIFY showVolumeBadgeChanged)

    ONDAVIA_OBSERVABLE(bool, showVolumeBadge, setShowVolumeBadge, false);

public:
    static constexpr double pollSeconds = 0.5;
    static constexpr double badgeSeconds = 1.0;
    /// Of one key press, and of one notch of a wheel.
    static constexpr double volumeStep = 0.05;

    /// All must outlive the object.
    PlayerLevels(const AVAudioSession& audioSession, SystemVolumeHelper& systemVolume,
                 ScreenBrightness& screenBrightness, Scheduler& scheduler);
    ~PlayerLevels() override;

    [[nodiscard]] SliderButtonModel* brightness() { return &m_brightness; }
    [[nodiscard]] SliderButtonModel* volume() { return &m_volume; }
    [[nodiscard]] bool isSliderOpen() const { return m_brightness.isOpen() || m_volume.isOpen(); }

    /// Takes both from the system.
    void read();
    /// Follows the system no more. By now another player may.
    void stop();
    /// By so many steps, up or down, within its range.
    Q_INVOKABLE void changeVolume(double steps);

    /// One of the sliders has closed.
    Q_SIGNAL void sliderClosed();

private:
    void watch(const SliderButtonModel& slider);
    void readBrightness();
    void pollVolume();

    const AVAudioSession& m_audioSession;
    SystemVolumeHelper& m_systemVolume;
    ScreenBrightness& m_screenBrightness;
    Scheduler& m_scheduler;
    SliderButtonModel m_brightness;
    SliderButtonModel m_volume;
    std::unique_ptr<ScheduledTimer> m_volumeTimer;
    std::unique_ptr<ScheduledTimer> m_badgeTimer;
};

} // namespace ondavia
