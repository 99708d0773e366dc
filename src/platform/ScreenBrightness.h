#pragma once

#include <functional>
#include <optional>

namespace ondavia {

/// The brightness of the device's screen. On Linux the kernel's backlight, set through logind. Where there
/// is none, there is no brightness and setting it does nothing. Main thread; never waits for anybody.
class ScreenBrightness {
public:
    virtual ~ScreenBrightness() = default;
    /// From 0.0 to 1.0.
    [[nodiscard]] virtual std::optional<double> brightness() const = 0;
    /// What lies outside 0.0 to 1.0 is brought to the nearer end, what is no number is ignored.
    virtual void setBrightness(double brightness) = 0;
    /// Called when the brightness has changed, whoever changed it; empty to be told no more.
    virtual void setOnChange(std::function<void()> onChange) = 0;
};

} // namespace ondavia
