#include "library/CatalogueSummary.h"

#include "platform/PoolWork.h"
#include "store/LibraryStore.h"

#include <numeric>
#include <utility>

namespace ondavia {
namespace {

CatalogueSummary::Groups countGroups(StoreContext& context, const std::string& type) {
    return context.countsBy(&Channel::groupTitle, field(&Channel::type) == type);
}

} // namespace

CatalogueSummary::CatalogueSummary(LibraryStore& store)
    : m_store(store) {
    QObject::connect(&store, &LibraryStore::changed, &m_listener, [this](EntityKind kind) {
        if (kind == EntityKind::Channel) {
            m_prefetched = {};
            m_groups.clear();
        }
    });
}

void CatalogueSummary::prefetch() {
    m_prefetched = runOnPool([&store = m_store] {
        const auto context = store.makeContext();
        GroupsByType all;
        for (const char* type : {"live", "movie", "series"}) {
            all.emplace(type, countGroups(*context, type));
        }
        return all;
    });
}

const CatalogueSummary::Groups& CatalogueSummary::groups(const std::string& type) {
    if (m_prefetched.isValid()) {
        try {
            m_groups = std::exchange(m_prefetched, {}).result();
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
                           [](std::int64_t sum, const auto& group) { return sum + group.second; });
}

} // namespace ondavia
