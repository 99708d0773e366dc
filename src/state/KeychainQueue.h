#pragma once

#include "platform/PoolWork.h"
#include "platform/Scheduler.h"
#include "state/KeychainService.h"

#include <QObject>
#include <QScopeGuard>
#include <QThreadPool>

#include <memory>
#include <type_traits>

namespace ondavia {

/// Does the keychain's work one after the other and out of the main thread's way: a keyring may ask its user
/// for a password before it answers, or not answer at all. Where the store never keeps its caller waiting,
/// the work is done at once instead. Main thread.
class KeychainQueue final : public QObject {
    Q_OBJECT

public:
    /// Seconds that the keyring has for all that it is asked at a time. After them the application goes on
    /// without it.
    static constexpr double patience = 30;
    /// And those that it has after that to put back what was changed in part.
    static constexpr double putBackPatience = 5;

    /// Both must outlive the object.
    KeychainQueue(KeychainService& keychain, Scheduler& scheduler);
    /// What is still to be kept or deleted has a second for that, and what then has to be put back another.
    ~KeychainQueue() override;

    /// Has `work(keychain)` done after what was asked for before. The future is finished already where
    /// nobody has to wait.
    template<class Work> QFuture<std::invoke_result_t<Work&, KeychainService&>> run(Work work) {
        using Result = std::invoke_result_t<Work&, KeychainService&>;
        if (!m_keychain.keepsWaiting()) {
            PromisedWork<Result, Work> now(std::move(work));
            now.run(m_keychain);
            return now.future();
        }
        begin();
        return runOnPool(
            [this, work = std::move(work)]() mutable {
                const auto ended = qScopeGuard([this] { announceEnd(); });
                return work(m_keychain);
            },
            m_thread);
    }

    /// The keyring has not answered in time: what was asked of it has failed, and all that follows fails at
    /// once. Emitted once.
    Q_SIGNAL void gaveUp();

private:
    void begin();
    void announceEnd();
    void giveUp();

    KeychainService& m_keychain;
    Scheduler& m_scheduler;
    int m_pending = 0;
    std::unique_ptr<ScheduledTimer> m_limit;
    std::unique_ptr<ScheduledTimer> m_putBackLimit;
    /// One thread, and so in order.
    QThreadPool m_thread;
};

} // namespace ondavia
