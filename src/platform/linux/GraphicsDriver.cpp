#include "platform/linux/GraphicsDriver.h"

#include <QThreadPool>

#include <EGL/egl.h>
#include <EGL/eglext.h>

namespace ondavia {

void readGraphicsDriver() {
    QThreadPool::globalInstance()->start([] {
        // A display without a surface: it asks nothing of the desktop, and its driver comes in the same
        // library as those for windows. It stays, so that the library does.
        const EGLDisplay display =
            eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
        if (display != EGL_NO_DISPLAY) {
            eglInitialize(display, nullptr, nullptr);
        }
    });
}

} // namespace ondavia
