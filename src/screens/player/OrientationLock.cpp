#include "screens/player/OrientationLock.h"

#include <QGuiApplication>
#include <QQuickWindow>

namespace ondavia {

namespace {

constexpr Qt::ScreenOrientations allOrientations{Qt::PortraitOrientation, Qt::InvertedPortraitOrientation,
                                                 Qt::LandscapeOrientation, Qt::InvertedLandscapeOrientation};

Qt::ScreenOrientations& storedMask() {
    static Qt::ScreenOrientations mask = allOrientations;
    return mask;
}

QQuickWindow* firstWindow() {
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        if (auto* scene = qobject_cast<QQuickWindow*>(window)) {
            return scene;
        }
    }
    return nullptr;
}

/// A shell takes one orientation, or "as the screen is", which stands for all of them.
Qt::ScreenOrientation contentOrientation(Qt::ScreenOrientations mask) {
    if (mask == allOrientations) {
        return Qt::PrimaryOrientation;
    }
    for (const auto orientation : {Qt::PortraitOrientation, Qt::LandscapeOrientation,
                                   Qt::InvertedPortraitOrientation, Qt::InvertedLandscapeOrientation}) {
        if (mask.testFlag(orientation)) {
            return orientation;
        }
    }
    return Qt::PrimaryOrientation;
}

} // namespace

void OrientationLock::set(Qt::ScreenOrientations mask) {
    // First of all: whoever is told of the change below may ask at once.
    storedMask() = mask;
    if (QQuickWindow* window = firstWindow()) {
        window->reportContentOrientationChange(contentOrientation(mask));
    }
}

Qt::ScreenOrientations AppDelegate::supportedInterfaceOrientations() {
    return storedMask();
}

} // namespace ondavia
