#include "SyncFixture.h"

#include <thread>

namespace ondavia::testing {
namespace {

class NetworkMonitorTest : public ::testing::Test {
protected:
    NetworkMonitorTest() {
        auto scripted = std::make_unique<ScriptedPath>();
        path = scripted.get();
        monitor = std::make_unique<NetworkMonitor>(std::move(scripted));
    }
    /// Reports from a thread that is not the main one, and waits for that thread.
    void report(const NWPath& reported) const {
        std::thread([&] { path->report(reported); }).join();
    }

    ScriptedPath* path = nullptr;
    std::unique_ptr<NetworkMonitor> monitor;
};

TEST_F(NetworkMonitorTest, IsConnectedAndNotExpensiveBeforeTheFirstReport) {
    EXPECT_TRUE(path->started);
    EXPECT_TRUE(monitor->isConnected());
    EXPECT_FALSE(monitor->isExpensive());
}

TEST_F(NetworkMonitorTest, AChangeShowsOnceTheMainThreadHasTakenItOver) {
    report({.satisfied = false, .isExpensive = true});
    EXPECT_TRUE(monitor->isConnected());
    EXPECT_FALSE(monitor->isExpensive());
    drainEvents();
    EXPECT_FALSE(monitor->isConnected());
    EXPECT_TRUE(monitor->isExpensive());
}

TEST_F(NetworkMonitorTest, FollowsThePathBack) {
    report({.satisfied = false, .isExpensive = true});
    drainEvents();
    report({.satisfied = true, .isExpensive = true});
    drainEvents();
    EXPECT_TRUE(monitor->isConnected());
    EXPECT_TRUE(monitor->isExpensive());
    report({.satisfied = true, .isExpensive = false});
    drainEvents();
    EXPECT_TRUE(monitor->isConnected());
    EXPECT_FALSE(monitor->isExpensive());
}

TEST_F(NetworkMonitorTest, TellsItsObserversOnTheMainThreadConnectionFirst) {
    std::vector<std::string> told;
    QObject::connect(monitor.get(), &NetworkMonitor::isConnectedChanged, monitor.get(), [&] {
        EXPECT_EQ(QThread::currentThread(), monitor->thread());
        EXPECT_FALSE(monitor->isExpensive());
        told.emplace_back("connected");
    });
    QObject::connect(monitor.get(), &NetworkMonitor::isExpensiveChanged, monitor.get(),
                     [&] { told.emplace_back("expensive"); });
    report({.satisfied = false, .isExpensive = true});
    drainEvents();
    EXPECT_EQ(told, (std::vector<std::string>{"connected", "expensive"}));
}

TEST_F(NetworkMonitorTest, AReportThatComesAfterItsEndIsDropped) {
    report({.satisfied = false});
    monitor.reset();
    drainEvents();
}

} // namespace
} // namespace ondavia::testing
