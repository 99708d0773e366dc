#include "SyncFixture.h"

#include <condition_variable>
#include <mutex>

namespace ondavia::testing {
namespace {

/// Holds requests up until all of them are there.
class Gathering final {
public:
    explicit Gathering(int expected)
        : m_expected(expected) {}

    void arriveAndWait() {
        std::unique_lock lock(m_mutex);
        ++m_arrived;
        m_changed.notify_all();
        const bool isOver = m_changed.wait_for(lock, std::chrono::seconds(20),
                                               [this] { return m_arrived >= m_expected || m_isGivenUp; });
        if (!isOver) {
            m_isGivenUp = true;
            m_changed.notify_all();
        }
    }
    /// Whether nobody has waited in vain.
    [[nodiscard]] bool wasComplete() {
        const std::lock_guard lock(m_mutex);
        return m_arrived == m_expected && !m_isGivenUp;
    }

private:
    const int m_expected;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_arrived = 0;
    bool m_isGivenUp = false;
};

using SyncDownloadsTest = SyncFixture;

TEST_F(SyncDownloadsTest, StartAllAtOnce) {
    const std::vector<std::pair<const char*, std::string>> lists{
        {"get_live_categories", categoriesJSON({{"1", "News"}})},
        {"get_vod_categories", categoriesJSON({{"1", "Drama"}})},
        {"get_series_categories", categoriesJSON({{"1", "Long"}})},
        {"get_live_streams", listJSON(ListKind::Live, {})},
        {"get_vod_streams", listJSON(ListKind::Movies, {.first = 10})},
        {"get_series", listJSON(ListKind::Series, {.first = 20})}};
    Gathering requests(static_cast<int>(lists.size()));
    for (const auto& [action, text] : lists) {
        provider.script(action,
                        {[&requests, answer = body(text)](const httplib::Request& request, auto& response) {
                            requests.arriveAndWait();
                            answer(request, response);
                        }});
    }
    sync();
    EXPECT_TRUE(requests.wasComplete()) << "a list was waited for before another was asked for";
    EXPECT_EQ(store->mainContext().count<Channel>(), 3);
}

} // namespace
} // namespace ondavia::testing
