#include "screens/player/PlayerLevels.h"

#include "platform/AVAudioSession.h"
#include "platform/ScreenBrightness.h"
#include "platform/SystemVolumeHelper.h"

#include <algorithm>
#include <cmath>

namespace ondavia {

PlayerLevels::PlayerLevels(const AVAudioSession& audioSession, SystemVolumeHelper& systemVolume,
                           ScreenBrightness& screenBrightness, Scheduler& scheduler)
    : m_audioSession(audioSession)
    , m_systemVolume(systemVolume)
    , m_screenBrightness(screenBrightness)
    , m_scheduler(scheduler)
    , m_brightness(0.0, 1.0, scheduler)
    , m_volume(0.0, 1.0, scheduler)
    , m_volumeTimer(scheduler.repeating(pollSeconds, [this] { pollVolume(); })) {
    constexpr double unread = 0.5;
    m_brightness.setValue(unread);
    m_volume.setValue(unread);
    watch(m_brightness);
    watch(m_volume);
    connect(&m_brightness, &SliderButtonModel::changed, this,
            [this](double value) { m_screenBrightness.setBrightness(value); });
    connect(&m_volume, &SliderButtonModel::changed, this,
            [this](double value) { m_systemVolume.setVolume(static_cast<float>(value)); });
    m_screenBrightness.setOnChange([this] { readBrightness(); });
}

PlayerLevels::~PlayerLevels() {
    stop();
}

void PlayerLevels::stop() {
    if (m_volumeTimer) {
        m_volumeTimer.reset();
        m_screenBrightness.setOnChange({});
    }
}

void PlayerLevels::watch(const SliderButtonModel& slider) {
    connect(&slider, &SliderButtonModel::showSliderChanged, this, [this, &slider] {
        if (!slider.showSlider()) {
            Q_EMIT sliderClosed();
        }
    });
}

void PlayerLevels::read() {
    readBrightness();
    m_volume.setValue(static_cast<double>(m_audioSession.outputVolume()));
}

void PlayerLevels::changeVolume(double steps) {
    // The mirror may be half a second old.
    const auto output = static_cast<double>(m_audioSession.outputVolume());
    const double volume = std::clamp(output + steps * volumeStep, 0.0, 1.0);
    m_volume.setValue(volume);
    m_systemVolume.setVolume(static_cast<float>(volume));
    setShowVolumeBadge(true);
    m_badgeTimer = m_scheduler.once(badgeSeconds, [this] { setShowVolumeBadge(false); });
}

void PlayerLevels::readBrightness() {
    if (const auto brightness = m_screenBrightness.brightness()) {
        m_brightness.setValue(*brightness);
    }
}

void PlayerLevels::pollVolume() {
    constexpr double smallestChange = 0.01;
    const auto output = static_cast<double>(m_audioSession.outputVolume());
    if (std::abs(output - m_volume.value()) > smallestChange) {
        m_volume.setValue(output);
    }
}

} // namespace ondavia
