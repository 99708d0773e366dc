#include "base/FatalFault.h"

#include <gtest/gtest.h>

namespace ondavia {
namespace {

TEST(FatalFaultDeathTest, endsTheProcessAfterALogLine) {
    ::testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH(fatalFault("no way out"), "com.ondavia general error: fatal: no way out");
}

TEST(FatalFault, letsAHandlerLeaveByAnException) {
    setFatalFaultHandler([](std::string_view) { throw 1; });
    EXPECT_THROW(fatalFault("handled"), int);
    setFatalFaultHandler(nullptr);
}

} // namespace
} // namespace ondavia
