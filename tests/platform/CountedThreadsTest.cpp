#include "platform/CountedThreads.h"
#include "support/NoThreads.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <stdexcept>
#include <system_error>

namespace ondavia {
namespace {

using namespace std::chrono_literals;

constexpr auto never = 2min;

TEST(CountedThreads, countWorkUntilItHasEnded) {
    CountedThreads threads;
    EXPECT_TRUE(threads.wait(0ms));
    std::latch gate(1);
    threads.start([&gate](const auto&) { gate.wait(); });
    EXPECT_FALSE(threads.wait(0ms));
    gate.count_down();
    EXPECT_TRUE(threads.wait(never));
}

TEST(CountedThreads, countWhatIsAnnounced) {
    CountedThreads threads;
    auto announcement = threads.announce();
    EXPECT_FALSE(threads.wait(0ms));
    announcement.reset();
    EXPECT_TRUE(threads.wait(0ms));
}

TEST(CountedThreads, countAThreadUntilItsOwnObjectsAreGone) {
    static std::atomic_bool* result = nullptr;
    std::atomic_bool wasCounted = false;
    result = &wasCounted;
    CountedThreads threads;
    threads.start([&threads](const auto&) {
        struct Reporter final {
            ~Reporter() { *result = !all->wait(0ms); }
            CountedThreads* all;
        };
        thread_local Reporter reporter{&threads};
        static_cast<void>(reporter);
    });
    EXPECT_TRUE(threads.wait(never));
    EXPECT_TRUE(wasCounted);
}

TEST(CountedThreads, handResultsAndErrorsOver) {
    CountedThreads threads;
    EXPECT_EQ(threads.run([](const auto&) { return 42; }).result(), 42);
    auto failing = threads.run([](const auto&) { throw std::length_error("too long"); });
    EXPECT_THROW(failing.waitForFinished(), std::length_error);
}

TEST(CountedThreads, letGoOfTheWorkBeforeItsEndIsHeard) {
    CountedThreads threads;
    const auto held = std::make_shared<int>(1);
    threads.run([held](const auto&) {}).waitForFinished();
    EXPECT_EQ(held.use_count(), 1);
}

TEST(CountedThreads, tellAllWorkToStopAndWaitForIt) {
    std::atomic_int ended = 0;
    {
        CountedThreads threads;
        const auto untilStopped = [&ended](const std::stop_token& stop) {
            std::atomic_bool isStopped = false;
            const std::stop_callback stopped(stop, [&isStopped] {
                isStopped = true;
                isStopped.notify_all();
            });
            isStopped.wait(false);
            ++ended;
        };
        threads.start(untilStopped);
        threads.start(untilStopped);
        threads.requestStop();
        threads.start(untilStopped);
    }
    EXPECT_EQ(ended, 3);
}

TEST(CountedThreads, countNothingWhereNoThreadCanBeHad) {
    CountedThreads threads;
    {
        const testing::NoThreads none;
        EXPECT_THROW(threads.start([](const auto&) {}), std::system_error);
    }
    EXPECT_TRUE(threads.wait(0ms));
    threads.run([](const auto&) {}).waitForFinished();
}

} // namespace
} // namespace ondavia
