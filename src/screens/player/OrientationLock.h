#pragma once

#include <QtCore/qnamespace.h>

namespace ondavia {

/// Which orientations the screen on show can be used in: one value for the process, all four at start.
/// Main thread.
struct OrientationLock final {
    /// Stores `mask`, then tells the first window's shell of it. Without a window the mask is stored only,
    /// and holds for later questions.
    static void set(Qt::ScreenOrientations mask);
};

/// What the system asks about the application.
struct AppDelegate final {
    [[nodiscard]] static Qt::ScreenOrientations supportedInterfaceOrientations();
};

} // namespace ondavia
