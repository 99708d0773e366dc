#pragma once

#include <string_view>

namespace ondavia {

/// Begins to load the libraries of the graphics driver on the thread pool: they are large, and a program
/// waits for them when it opens its first window. Without effect where there is none to be found.
/// `windowSystem` is Qt's name of the platform ("xcb", "wayland"). To be called once; any thread.
void readGraphicsDriver(std::string_view windowSystem);

/// Whether OpenGL is drawn by the processor here, or not to be had at all. Waits for the driver that is
/// being read; false when none was asked for.
[[nodiscard]] bool isOpenGlSoftware();

} // namespace ondavia
