#include "state/KeychainQueue.h"

#include "base/AppLogger.h"

namespace ondavia {

KeychainQueue::KeychainQueue(KeychainService& keychain, Scheduler& scheduler)
    : m_keychain(keychain)
    , m_scheduler(scheduler) {
    m_thread.setMaxThreadCount(1);
}

KeychainQueue::~KeychainQueue() {
    constexpr int lastPatience = 1000;
    for (int ends = 0; ends < 2 && !m_thread.waitForDone(lastPatience); ++ends) {
        m_keychain.giveUp();
    }
}

void KeychainQueue::begin() {
    if (m_pending++ == 0) {
        m_limit = m_scheduler.once(patience, [this] { giveUp(); });
    }
}

/// On the queue's thread.
void KeychainQueue::announceEnd() {
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (--m_pending == 0) {
                m_limit.reset();
            }
        },
        Qt::QueuedConnection);
}

void KeychainQueue::giveUp() {
    AppLogger::keychain.error("the keyring does not answer; nothing is remembered from now on");
    m_keychain.giveUp();
    m_putBackLimit = m_scheduler.once(putBackPatience, [this] { m_keychain.giveUp(); });
    Q_EMIT gaveUp();
}

} // namespace ondavia
