#pragma once

#include <QtCore/qnamespace.h>

namespace ondavia {

/// Which orientations the screen on show can be used in: one value for the process, all four at start.
/// Main thread.
///
/// No shell is told: a window can only report that its content is turned already, and a compositor then turns
/// the window to match. Screens lay themselves out by the size they have.
struct OrientationLock final {
    /// Stores `mask`, which holds for later questions.
    static void set(Qt::ScreenOrientations mask);
};

/// What the system asks about the application.
struct AppDelegate final {
    [[nodiscard]] static Qt::ScreenOrientations supportedInterfaceOrientations();
};

} // namespace ondavia
