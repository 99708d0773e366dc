#include "library/CatalogueSummary.h"

#include "platform/PoolWork.h"
#include "store/LibraryStore.h"

#include <qcoro/qcorofuture.h>

#include <numeric>
#include <utility>

namespace ondavia {
namespace {

CatalogueSummary::Groups countGroups(StoreContext& context, const std::string& type) {
    return context.groupKeys(&Channel::groupTitle, &Channel::num, CatalogueSummary::firstRows,
                             field(&Channel::type) == type);
}

} // namespace

CatalogueSummary::CatalogueSummary(LibraryStore& store)
    : m_store(store) {
    QObject::connect(&store, &LibraryStore::changed, &m_listener, [this](EntityKind kind) {
        if (kind == EntityKind::Channel) {
            m_prefetched = {};
            m_groups.clear();
            m_isCounted = false;
        }
    });
}

void CatalogueSummary::prefetch() {
    const auto countAll = [&store = m_store] {
        const auto context = store.makeContext();
        GroupsByType all;
        for (const char* type : {"live", "movie", "series"}) {
            all.emplace(type, countGroups(*context, type));
        }
        return all;
    };
    m_prefetched = runOnPool(countAll, m_pool);
}

QCoro::Task<void> CatalogueSummary::ready() {
    if (isReady()) {
        co_return;
    }
    if (!m_prefetched.isValid()) {
        prefetch();
    }
    // Its own: a change replaces the other.
    const QFuture<GroupsByType> counting = m_prefetched;
    try {
        co_await counting;
    } catch (const StoreError&) {
        // Counted anew, for whoever asks.
    }
}

const CatalogueSummary::Groups& CatalogueSummary::groups(const std::string& type) {
    if (m_prefetched.isValid()) {
        try {
            m_groups = std::exchange(m_prefetched, {}).result();
            m_isCounted = true;
        } catch (const StoreError&) {
            // Counted below, for whoever asks.
        }
    }
    auto found = m_groups.find(type);
    if (found == m_groups.end()) {
        found = m_groups.emplace(type, countGroups(m_store.mainContext(), type)).first;
    }
    return found->second;
}

std::int64_t CatalogueSummary::count(const std::string& type) {
    const Groups& all = groups(type);
    return std::accumulate(all.begin(), all.end(), std::int64_t{0},
                           [](std::int64_t sum, const auto& group) { return sum + group.count; });
}

} // namespace ondavia
