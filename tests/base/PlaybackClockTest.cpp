#include "base/PlaybackClock.h"

#include <gtest/gtest.h>

namespace ondavia::testing {
namespace {

using namespace std::chrono_literals;

constexpr PlaybackClock::Time start{1000s};

TEST(PlaybackClock, CountsOnFromItsLastReport) {
    PlaybackClock clock;
    clock.report(40, start);
    EXPECT_EQ(clock.position(start + 1s), 40) << "nothing runs yet";
    clock.run(1.5, start);
    EXPECT_DOUBLE_EQ(clock.position(start + 1s), 41.5);
    clock.report(43, start + 1s);
    EXPECT_DOUBLE_EQ(clock.position(start + 1500ms), 43.75);
}

TEST(PlaybackClock, StandsWhereNoReportComesAnyMore) {
    PlaybackClock clock;
    clock.report(40, start);
    clock.run(1, start);
    EXPECT_DOUBLE_EQ(clock.position(start + 2s), 42);
    EXPECT_DOUBLE_EQ(clock.position(start + 25s), 42)
        << "a stopped process, a sound server that holds mpv up";
    clock.run(0, start + 25s);
    EXPECT_DOUBLE_EQ(clock.position(start + 26s), 42);
}

} // namespace
} // namespace ondavia::testing
