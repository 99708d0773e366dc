#include "platform/linux/QtScheduler.h"

#include <QTimer>
#include <qcoro/qcorofuture.h>

#include <QPromise>

namespace ondavia {
namespace {

std::chrono::milliseconds toMilliseconds(double seconds) {
    return std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
}

class QtScheduledTimer final : public ScheduledTimer {
public:
    QtScheduledTimer(double seconds, bool singleShot, std::function<void()> work) {
        m_timer.setSingleShot(singleShot);
        m_timer.setTimerType(Qt::PreciseTimer);
        // A copy runs, since the work may destroy this timer.
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [work = std::move(work)] {
            const auto running = work;
            running();
        });
        m_timer.start(toMilliseconds(seconds));
    }

    void invalidate() override { m_timer.stop(); }

private:
    QTimer m_timer;
};

class QtScheduler final : public Scheduler {
public:
    std::unique_ptr<ScheduledTimer> repeating(double seconds, std::function<void()> tick) override {
        return std::make_unique<QtScheduledTimer>(seconds, false, std::move(tick));
    }

    std::unique_ptr<ScheduledTimer> once(double seconds, std::function<void()> work) override {
        return std::make_unique<QtScheduledTimer>(seconds, true, std::move(work));
    }

    QCoro::Task<bool> sleep(double seconds, std::stop_token stop) override {
        if (stop.stop_requested()) {
            co_return false;
        }
        // Whichever of the clock and the stop comes first finishes the promise; the other finds it so.
        const auto promise = std::make_shared<QPromise<bool>>();
        promise->start();
        QFuture<bool> woken = promise->future();
        const auto wake = [promise](bool slept) {
            if (promise->addResult(slept)) {
                promise->finish();
            }
        };
        QTimer clock;
        clock.setSingleShot(true);
        clock.setTimerType(Qt::PreciseTimer);
        QObject::connect(&clock, &QTimer::timeout, &clock, [wake] { wake(true); });
        clock.start(toMilliseconds(seconds));
        const std::stop_callback stopped(stop, [wake] { wake(false); });
        co_return co_await woken;
    }

    void onMainThread(std::function<void()> work) override {
        QMetaObject::invokeMethod(&m_context, std::move(work), Qt::QueuedConnection);
    }

private:
    QObject m_context;
};

} // namespace

std::unique_ptr<Scheduler> makeQtScheduler() {
    return std::make_unique<QtScheduler>();
}

} // namespace ondavia
