#include "support/ManualScheduler.h"
#include "support/TestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <thread>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;

QCoro::Task<> noteSleep(Scheduler* scheduler, double seconds, std::stop_token stop,
                        std::optional<bool>* outcome) {
    *outcome = co_await scheduler->sleep(seconds, stop);
}

TEST(ManualScheduler, FiresInTheOrderOfTimesThenOfRequests) {
    ManualScheduler scheduler;
    std::vector<std::string> fired;
    const auto late = scheduler.once(2, [&] { fired.push_back("late"); });
    const auto often = scheduler.repeating(1, [&] { fired.push_back("often"); });
    const auto early = scheduler.once(1, [&] { fired.push_back("early"); });
    scheduler.advance(0.999);
    EXPECT_TRUE(fired.empty());
    scheduler.advance(1.001);
    EXPECT_THAT(fired, ElementsAre("often", "early", "late", "often"));
    EXPECT_EQ(scheduler.activeTimers(), 1);
}

TEST(ManualScheduler, LeavesInvalidatedTimersAlone) {
    ManualScheduler scheduler;
    int ticks = 0;
    std::unique_ptr<ScheduledTimer> timer;
    timer = scheduler.repeating(1, [&] {
        if (++ticks == 2) {
            timer.reset();
        }
    });
    scheduler.advance(10);
    EXPECT_EQ(ticks, 2);
    EXPECT_EQ(scheduler.activeTimers(), 0);
}

TEST(ManualScheduler, WakesSleepersWhenTheirTimeHasCome) {
    ManualScheduler scheduler;
    std::optional<bool> outcome;
    noteSleep(&scheduler, 1.0, {}, &outcome);
    scheduler.advance(0.5);
    EXPECT_FALSE(outcome);
    EXPECT_EQ(scheduler.activeSleeps(), 1);
    scheduler.advance(0.5);
    EXPECT_EQ(outcome, true);
    EXPECT_EQ(scheduler.activeSleeps(), 0);
}

TEST(ManualScheduler, EndsASleepInALaterTurnAfterAStop) {
    ManualScheduler scheduler;
    std::optional<bool> outcome;
    std::stop_source stop;
    noteSleep(&scheduler, 1.0, stop.get_token(), &outcome);
    stop.request_stop();
    EXPECT_FALSE(outcome);
    scheduler.runPending();
    EXPECT_EQ(outcome, false);
    scheduler.advance(5);
    EXPECT_EQ(outcome, false);
}

TEST(ManualScheduler, EndsSleepsWithItself) {
    std::optional<bool> outcome;
    {
        ManualScheduler scheduler;
        noteSleep(&scheduler, 1.0, {}, &outcome);
    }
    EXPECT_EQ(outcome, false);
}

TEST(ManualScheduler, RunsWorkFromOtherThreadsOnTheMainThread) {
    ManualScheduler scheduler;
    std::thread::id ranOn;
    std::thread([&] { scheduler.onMainThread([&] { ranOn = std::this_thread::get_id(); }); }).join();
    EXPECT_EQ(ranOn, std::thread::id());
    drainEvents();
    EXPECT_EQ(ranOn, std::this_thread::get_id());
}

} // namespace
} // namespace ondavia::testing
