#pragma once

#include "ContentFixture.h"

#include <future>
#include <memory>
#include <string>

namespace ondavia::testing {

/// A load that is held up in its middle, by a provider that answers slowly.
class HeldLoadTest : public ContentViewModelTest {
protected:
    HeldLoadTest() { scriptSmallCatalogue(); }
    ~HeldLoadTest() override { open(); }

    void TearDown() override {
        open();
        ContentViewModelTest::TearDown();
    }

    /// Lets the provider answer `action` only once the gate is open.
    void hold(const std::string& action, const std::string& text) {
        provider.script(action, {[gate = m_opened, answer = body(text)](const auto& request, auto& reply) {
                            gate.wait();
                            answer(request, reply);
                        }});
    }
    void open() {
        if (!m_isOpen) {
            m_isOpen = true;
            m_gate.set_value();
        }
    }
    void holdSeries() { hold("get_series", listJSON(ListKind::Series, {.first = 20, .name = "Series"})); }
    bool isAsked(const char* action) {
        return waitUntil([&, action] { return provider.requestCount(action) > 0; });
    }
    void expectNothingStored() {
        EXPECT_EQ(store->mainContext().count<Channel>(), 0);
        EXPECT_EQ(store->mainContext().count<Playlist>(), 0);
        EXPECT_EQ(store->mainContext().count<EPGProgram>(), 0);
        EXPECT_FALSE(defaults.stringArrayForKey(liveOrder));
        EXPECT_FALSE(defaults.dateForKey(lastSync));
        EXPECT_FALSE(defaults.dateForKey(lastGuideLoad));
    }

private:
    std::promise<void> m_gate;
    std::shared_future<void> m_opened = m_gate.get_future().share();
    bool m_isOpen = false;
};

} // namespace ondavia::testing
