#include "screens/player/OrientationLock.h"

namespace ondavia {

namespace {

constexpr Qt::ScreenOrientations allOrientations{Qt::PortraitOrientation, Qt::InvertedPortraitOrientation,
                                                 Qt::LandscapeOrientation, Qt::InvertedLandscapeOrientation};

Qt::ScreenOrientations& storedMask() {
    static Qt::ScreenOrientations mask = allOrientations;
    return mask;
}

} // namespace

void OrientationLock::set(Qt::ScreenOrientations mask) {
    storedMask() = mask;
}

Qt::ScreenOrientations AppDelegate::supportedInterfaceOrientations() {
    return storedMask();
}

} // namespace ondavia
