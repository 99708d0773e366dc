#include "platform/linux/GraphicsDriver.h"

#include <QFile>
#include <QThreadPool>

#include <gtest/gtest.h>

namespace ondavia {
namespace {

bool isLoaded(const char* library) {
    QFile maps(QStringLiteral("/proc/self/maps"));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(library);
}

TEST(GraphicsDriver, isLoadedBesideTheCaller) {
    ASSERT_FALSE(isLoaded("_dri.so"));
    readGraphicsDriver();
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_TRUE(isLoaded("_dri.so"));
}

} // namespace
} // namespace ondavia
