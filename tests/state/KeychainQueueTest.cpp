#include "StateFixture.h"

#include <condition_variable>
#include <mutex>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A keyring that answers nobody before it is opened.
class ClosedItems final : public SecItemStore {
public:
    OSStatus SecItemAdd(const SecItemQuery& item, const std::string& data) override {
        return answers("add " + item.account) ? m_items->SecItemAdd(item, data) : errSecNotAvailable;
    }
    std::optional<std::string> SecItemCopyMatching(const SecItemQuery& item, OSStatus& status) override {
        if (answers("copy " + item.account)) {
            return m_items->SecItemCopyMatching(item, status);
        }
        status = errSecNotAvailable;
        return std::nullopt;
    }
    OSStatus SecItemDelete(const SecItemQuery& item) override {
        return answers("delete " + item.account) ? m_items->SecItemDelete(item) : errSecNotAvailable;
    }
    OSStatus changeTogether(const std::function<OSStatus()>& changes) override { return changes(); }
    bool remembers() const override {
        const std::lock_guard lock(m_mutex);
        return m_state != State::GivenUp;
    }
    bool keepsWaiting() const override { return true; }
    void giveUp() override { become(State::GivenUp); }

    void open() { become(State::Open); }
    [[nodiscard]] std::vector<std::string> calls() const {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }
    [[nodiscard]] bool isAsked() const { return !calls().empty(); }

private:
    enum class State { Closed, Open, GivenUp };

    void become(State state) {
        const std::lock_guard lock(m_mutex);
        m_state = state;
        m_changed.notify_all();
    }
    bool answers(const std::string& call) {
        std::unique_lock lock(m_mutex);
        m_calls.push_back(call);
        m_changed.wait(lock, [this] { return m_state != State::Closed; });
        return m_state == State::Open;
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    State m_state = State::Closed;
    std::vector<std::string> m_calls;
    std::unique_ptr<SecItemStore> m_items = makeMemoryStore();
};

/// A keyring that is slow to put back what it has changed in part: it does not end before that is given up
/// too.
class PuttingBackItems final : public SecItemStore {
public:
    OSStatus SecItemAdd(const SecItemQuery& /*item*/, const std::string& /*data*/) override {
        return errSecNotAvailable;
    }
    std::optional<std::string> SecItemCopyMatching(const SecItemQuery& /*item*/, OSStatus& status) override {
        status = errSecNotAvailable;
        return std::nullopt;
    }
    OSStatus SecItemDelete(const SecItemQuery& /*item*/) override { return errSecNotAvailable; }
    OSStatus changeTogether(const std::function<OSStatus()>& /*changes*/) override {
        std::unique_lock lock(m_mutex);
        m_isLeft = m_changed.wait_for(lock, std::chrono::minutes(1), [this] { return m_givenUp == 2; });
        return errSecNotAvailable;
    }
    bool remembers() const override { return false; }
    bool keepsWaiting() const override { return true; }
    void giveUp() override {
        const std::lock_guard lock(m_mutex);
        ++m_givenUp;
        m_changed.notify_all();
    }

    [[nodiscard]] int givenUp() const {
        const std::lock_guard lock(m_mutex);
        return m_givenUp;
    }
    [[nodiscard]] bool isLeft() const {
        const std::lock_guard lock(m_mutex);
        return m_isLeft;
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_givenUp = 0;
    bool m_isLeft = false;
};

/// Has an account kept, which the items refuse.
void askToKeep(KeychainQueue& queue) {
    static_cast<void>(queue.run([](KeychainService& service) {
        return service.saveCredentials({"http://tv.example", "ana", "secret"});
    }));
}

class KeychainQueueTest : public StateFixture {
protected:
    ~KeychainQueueTest() override { closed.giveUp(); }

    /// A state whose keyring is asked and does not answer.
    std::unique_ptr<AppState> startWaiting() {
        auto state = std::make_unique<AppState>(queue, *manager, makeCurlURLSession);
        EXPECT_TRUE(waitUntil([this] { return closed.isAsked(); }));
        return state;
    }
    void storeInSettings() {
        defaults.setString(KeychainService::serverKey, "http://tv.example");
        defaults.setString(KeychainService::usernameKey, "ana");
        defaults.setString(KeychainService::passwordKey, "secret");
    }
    /// Opens the keyring and has everything done that it was asked.
    void openAndSettle() {
        closed.open();
        bool isDone = false;
        const auto last = queue.run([](KeychainService&) {});
        EXPECT_TRUE(waitUntil([&] { return last.isFinished(); }));
        scheduler.onMainThread([&isDone] { isDone = true; });
        EXPECT_TRUE(waitUntil([&] { return isDone; }));
        drainEvents();
    }
    std::optional<Credentials> kept() {
        auto stored = queue.run([](KeychainService& service) { return service.loadCredentials(); });
        EXPECT_TRUE(waitUntil([&] { return stored.isFinished(); }));
        return stored.result();
    }

    ClosedItems closed;
    KeychainService waiting{closed, defaults};
    KeychainQueue queue{waiting, scheduler};
};

TEST_F(KeychainQueueTest, TheStateIsThereBeforeTheKeyringAnswers) {
    const auto state = startWaiting();
    EXPECT_FALSE(state->hasCredentials());
    EXPECT_TRUE(state->isAwaitingAccount());
    EXPECT_EQ(state->makeXtreamClient(), nullptr);
}

TEST_F(KeychainQueueTest, TheAccountArrivesInItsOrderWhenTheKeyringAnswers) {
    storeInSettings();
    const auto state = startWaiting();
    std::vector<std::string> order;
    const auto note = [&](auto signal, const char* name) {
        QObject::connect(state.get(), signal, state.get(), [&order, name] { order.push_back(name); });
    };
    note(&AppState::serverChanged, "server");
    note(&AppState::usernameChanged, "username");
    note(&AppState::passwordChanged, "password");
    note(&AppState::hasCredentialsChanged, "hasCredentials");
    note(&AppState::isAwaitingAccountChanged, "isAwaitingAccount");
    note(&AppState::storedAccountCame, "came");
    closed.open();
    EXPECT_TRUE(waitUntil([&] { return order.size() == 6; }));
    EXPECT_THAT(order,
                ElementsAre("server", "username", "password", "hasCredentials", "isAwaitingAccount", "came"));
    EXPECT_TRUE(state->hasCredentials());
    EXPECT_EQ(state->password(), "secret");
    EXPECT_FALSE(defaults.stringForKey(KeychainService::passwordKey)) << "it was moved before it was read";
}

TEST_F(KeychainQueueTest, AnAccountIsInUseAtOnceAndKeptAfterWhatWasAskedBefore) {
    const auto state = startWaiting();
    state->saveCredentials("http://tv.example", "ana", "secret");
    EXPECT_TRUE(state->hasCredentials());
    EXPECT_NE(state->makeXtreamClient(), nullptr);
    EXPECT_THAT(closed.calls(), ElementsAre("copy ondavia_server"));
    openAndSettle();
    EXPECT_EQ(kept(), (Credentials{"http://tv.example", "ana", "secret"}));
}

TEST_F(KeychainQueueTest, AStoredAccountThatComesTooLateIsNotTaken) {
    storeInSettings();
    const auto state = startWaiting();
    state->saveCredentials("http://new.example", "eva", "word");
    openAndSettle();
    EXPECT_EQ(state->server(), "http://new.example");
    EXPECT_EQ(kept(), (Credentials{"http://new.example", "eva", "word"})) << "the migration comes before it";
}

TEST_F(KeychainQueueTest, WhoSignsOutMeanwhileStaysSignedOut) {
    storeInSettings();
    const auto state = startWaiting();
    state->logout();
    openAndSettle();
    EXPECT_FALSE(state->hasCredentials());
    EXPECT_EQ(kept(), std::nullopt);
}

TEST_F(KeychainQueueTest, AfterItsPatienceTheStateGoesOnWithoutTheKeyringAndSaysSo) {
    const auto state = startWaiting();
    state->saveCredentials("http://tv.example", "ana", "secret");
    const LogCapture log;
    scheduler.advance(KeychainQueue::patience - 1);
    EXPECT_FALSE(state->toastMessage());
    scheduler.advance(1);
    EXPECT_EQ(state->toastMessage(), "O porta-chaves não responde. Nada fica guardado para a próxima vez.");
    EXPECT_EQ(state->toastType(), ToastType::warning);
    EXPECT_FALSE(waiting.remembers());
    EXPECT_TRUE(state->hasCredentials()) << "the account is in use all the same";
    EXPECT_EQ(kept(), std::nullopt);
    EXPECT_EQ(log.text().find("secret"), std::string::npos);
}

TEST_F(KeychainQueueTest, AStartWhoseKeyringNeverAnswersEndsWithoutAnAccount) {
    const auto state = startWaiting();
    scheduler.advance(KeychainQueue::patience);
    EXPECT_TRUE(waitUntil([&] { return !state->isAwaitingAccount(); }));
    EXPECT_FALSE(state->hasCredentials());
    state->saveCredentials("http://tv.example", "ana", "secret");
    state->setToastMessage(std::nullopt);
    openAndSettle();
    scheduler.advance(KeychainQueue::patience);
    EXPECT_FALSE(state->toastMessage()) << "that is said once";
}

TEST_F(KeychainQueueTest, ASignOutThatTheKeyringNeverHearsOfHoldsForThisRun) {
    storeInSettings();
    const auto state = startWaiting();
    state->saveCredentials("http://tv.example", "ana", "secret");
    state->logout();
    EXPECT_FALSE(state->hasCredentials());
    EXPECT_EQ(state->makeXtreamClient(), nullptr);
    scheduler.advance(KeychainQueue::patience);
    EXPECT_EQ(state->toastType(), ToastType::warning);
    EXPECT_EQ(kept(), std::nullopt);
    EXPECT_FALSE(state->hasCredentials()) << "nothing that came too late signs in again";
}

TEST_F(KeychainQueueTest, AKeyringThatAnswersInTimeIsNotGivenUp) {
    const auto state = startWaiting();
    scheduler.advance(KeychainQueue::patience - 1);
    openAndSettle();
    scheduler.advance(2 * KeychainQueue::patience);
    EXPECT_FALSE(state->toastMessage());
    EXPECT_TRUE(waiting.remembers());
    EXPECT_EQ(scheduler.activeTimers(), 0);
}

TEST_F(KeychainQueueTest, AStateThatGoesWhileItWaitsIsNotTouched) {
    storeInSettings();
    startWaiting().reset();
    openAndSettle();
    EXPECT_EQ(kept(), (Credentials{"http://tv.example", "ana", "secret"}));
}

TEST_F(KeychainQueueTest, WhatIsPutBackHasALimitOfItsOwn) {
    PuttingBackItems slow;
    KeychainService service(slow, defaults);
    KeychainQueue slowQueue(service, scheduler);
    askToKeep(slowQueue);
    scheduler.advance(KeychainQueue::patience);
    EXPECT_EQ(slow.givenUp(), 1);
    scheduler.advance(KeychainQueue::putBackPatience);
    EXPECT_EQ(slow.givenUp(), 2);
}

TEST_F(KeychainQueueTest, QuittingEndsWhatIsPutBackToo) {
    PuttingBackItems slow;
    KeychainService service(slow, defaults);
    {
        KeychainQueue slowQueue(service, scheduler);
        askToKeep(slowQueue);
    }
    EXPECT_EQ(slow.givenUp(), 2);
    EXPECT_TRUE(slow.isLeft());
}

TEST_F(KeychainQueueTest, WhereNobodyHasToWaitTheAnswerIsThereAtOnce) {
    const auto answer = keychainQueue.run([](KeychainService& service) { return service.loadCredentials(); });
    EXPECT_TRUE(answer.isFinished());
    EXPECT_EQ(scheduler.activeTimers(), 0);
}

} // namespace
} // namespace ondavia::testing
