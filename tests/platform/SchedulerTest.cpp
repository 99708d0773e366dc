#include "platform/NotificationCenter.h"
#include "platform/linux/QtScheduler.h"
#include "support/TestSupport.h"

#include <QThread>
#include <qcoro/qcorotask.h>

#include <gtest/gtest.h>
#include <thread>

namespace ondavia {
namespace {

TEST(QtScheduler, repeatsUntilInvalidated) {
    const auto scheduler = makeQtScheduler();
    int ticks = 0;
    const auto timer = scheduler->repeating(0.005, [&] { ++ticks; });
    ASSERT_TRUE(testing::waitUntil([&] { return ticks >= 3; }));
    timer->invalidate();
    const int seen = ticks;
    bool later = false;
    const auto other = scheduler->once(0.05, [&] { later = true; });
    ASSERT_TRUE(testing::waitUntil([&] { return later; }));
    EXPECT_EQ(ticks, seen);
}

TEST(QtScheduler, aTimerMayDestroyItselfInItsOwnWork) {
    const auto scheduler = makeQtScheduler();
    std::unique_ptr<ScheduledTimer> timer;
    int calls = 0;
    timer = scheduler->once(0.001, [&] {
        timer.reset();
        ++calls;
    });
    ASSERT_TRUE(testing::waitUntil([&] { return calls == 1; }));
}

TEST(QtScheduler, sleepsItsTimeOrUntilAStop) {
    const auto scheduler = makeQtScheduler();
    EXPECT_TRUE(QCoro::waitFor(scheduler->sleep(0.01)));
    std::stop_source stop;
    auto sleeping = scheduler->sleep(3600, stop.get_token());
    const auto timer = scheduler->once(0.01, [&] { stop.request_stop(); });
    EXPECT_FALSE(QCoro::waitFor(std::move(sleeping)));
    EXPECT_FALSE(QCoro::waitFor(scheduler->sleep(3600, stop.get_token())));
}

TEST(QtScheduler, bringsWorkFromAnyThreadToTheMainThread) {
    const auto scheduler = makeQtScheduler();
    QThread* ranOn = nullptr;
    std::thread([&] { scheduler->onMainThread([&] { ranOn = QThread::currentThread(); }); }).join();
    EXPECT_EQ(ranOn, nullptr);
    ASSERT_TRUE(testing::waitUntil([&] { return ranOn != nullptr; }));
    EXPECT_EQ(ranOn, QThread::currentThread());
}

TEST(NotificationCenter, reachesObserversOfThatNameAndObjectOnly) {
    NotificationCenter center;
    const int engine = 0;
    const int otherEngine = 0;
    const int observer = 0;
    int calls = 0;
    center.addObserver(&observer, "finished", &engine, [&](const Notification& notification) {
        ++calls;
        EXPECT_EQ(notification.userInfo.value(QStringLiteral("reason")).toInt(), 1);
    });
    center.post({"finished", &engine, {{QStringLiteral("reason"), 1}}});
    center.post({"finished", &otherEngine, {}});
    center.post({"started", &engine, {}});
    EXPECT_EQ(calls, 1);
    center.removeObserver(&observer, &engine);
    center.post({"finished", &engine, {}});
    EXPECT_EQ(calls, 1);
}

TEST(NotificationCenter, aHandlerMayRemoveItself) {
    NotificationCenter center;
    const int engine = 0;
    int calls = 0;
    center.addObserver(&calls, "finished", &engine, [&](const Notification&) {
        ++calls;
        center.removeObserver(&calls, &engine);
    });
    center.post({"finished", &engine, {}});
    center.post({"finished", &engine, {}});
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace ondavia
