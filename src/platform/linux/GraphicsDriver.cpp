#include "platform/linux/GraphicsDriver.h"

#include <QThreadPool>

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <future>
#include <memory>

namespace ondavia {
namespace {

/// Whether the driver is software. Written once, before anybody waits.
std::shared_future<bool>& answer() {
    static std::shared_future<bool> future;
    return future;
}

EGLenum platformOf(std::string_view windowSystem) {
    if (windowSystem == "xcb") {
        return EGL_PLATFORM_X11_KHR;
    }
    return windowSystem.starts_with("wayland") ? EGL_PLATFORM_WAYLAND_KHR : EGL_PLATFORM_SURFACELESS_MESA;
}

/// Over a connection of its own to the desktop. It stays, so that the libraries do.
bool readDriver(EGLenum platform) {
    const EGLDisplay display = eglGetPlatformDisplay(platform, EGL_DEFAULT_DISPLAY, nullptr);
    if (display == EGL_NO_DISPLAY || eglInitialize(display, nullptr, nullptr) != EGL_TRUE) {
        return true;
    }
    // Only Mesa has it, and only Mesa draws with the processor.
    const auto nameOf =
        reinterpret_cast<PFNEGLGETDISPLAYDRIVERNAMEPROC>(eglGetProcAddress("eglGetDisplayDriverName"));
    const char* name = nameOf != nullptr ? nameOf(display) : nullptr;
    return name != nullptr && std::string_view(name).ends_with("swrast");
}

} // namespace

void readGraphicsDriver(std::string_view windowSystem) {
    const auto promise = std::make_shared<std::promise<bool>>();
    answer() = promise->get_future().share();
    QThreadPool::globalInstance()->start(
        [promise, platform = platformOf(windowSystem)] { promise->set_value(readDriver(platform)); });
}

bool isOpenGlSoftware() {
    return answer().valid() && answer().get();
}

} // namespace ondavia
