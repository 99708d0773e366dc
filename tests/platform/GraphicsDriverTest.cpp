#include "platform/linux/GraphicsDriver.h"

#include <QFile>

#include <gtest/gtest.h>

namespace ondavia {
namespace {

bool isLoaded(const char* library) {
    QFile maps(QStringLiteral("/proc/self/maps"));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(library);
}

TEST(GraphicsDriver, isLoadedBesideTheCaller) {
    ASSERT_FALSE(isLoaded("_dri.so"));
    EXPECT_FALSE(isOpenGlSoftware()) << "nobody asked for a driver";
    qputenv("LIBGL_ALWAYS_SOFTWARE", "1");
    readGraphicsDriver("offscreen");
    EXPECT_TRUE(isOpenGlSoftware());
    EXPECT_TRUE(isLoaded("_dri.so"));
}

} // namespace
} // namespace ondavia
