#pragma once

#include "platform/ScreenBrightness.h"
#include "platform/SystemVolumeHelper.h"
#include "playback/FakePlayer.h"

#include <utility>
#include <vector>

namespace ondavia::testing {

/// An output that is as loud as it is told.
class FakeSystemVolume final : public SystemVolumeHelper {
public:
    explicit FakeSystemVolume(FakeAudioSession& audio)
        : m_audio(audio) {}

    void setVolume(float volume) override {
        asked.push_back(volume);
        m_audio.volume = volume;
    }

    std::vector<float> asked;

private:
    FakeAudioSession& m_audio;
};

/// A screen that is as bright as it is told.
class FakeScreenBrightness final : public ScreenBrightness {
public:
    [[nodiscard]] std::optional<double> brightness() const override { return level; }
    void setBrightness(double brightness) override {
        asked.push_back(brightness);
        change(brightness);
    }
    void setOnChange(std::function<void()> onChange) override { m_onChange = std::move(onChange); }

    /// As by a key of the keyboard; absent where there is no such screen.
    void change(std::optional<double> brightness) {
        level = brightness;
        if (m_onChange) {
            m_onChange();
        }
    }

    std::optional<double> level = 0.5;
    std::vector<double> asked;

private:
    std::function<void()> m_onChange;
};

} // namespace ondavia::testing
