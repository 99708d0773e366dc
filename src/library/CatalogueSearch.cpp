#include "library/CatalogueSearch.h"

#include "library/SearchIndex.h"
#include "platform/PoolWork.h"
#include "store/LibraryStore.h"

#include <qcoro/qcorofuture.h>

namespace ondavia {

CatalogueSearch::CatalogueSearch(LibraryStore& store)
    : m_store(store)
    , m_changes(store, EntityKind::Channel, [this] {
        if (m_isWanted) {
            prefetch();
        }
    }) {
    m_pool.setMaxThreadCount(1);
    // At once, unlike the reading: nobody is given what has just become wrong.
    QObject::connect(&store, &LibraryStore::changed, &m_listener, [this](EntityKind kind) {
        if (kind == EntityKind::Channel) {
            m_index = {};
        }
    });
}

void CatalogueSearch::prefetch() {
    m_isWanted = true;
    const bool hasFailed = m_index.isFinished() && m_index.resultCount() == 0;
    if (m_index.isValid() && !hasFailed) {
        return;
    }
    const auto read = [&store = m_store]() -> Index {
        const auto context = store.makeContext();
        return std::make_shared<const SearchIndex>(SearchIndex::read(*context));
    };
    m_index = runOnPool(read, m_pool);
}

QCoro::Task<CatalogueSearch::Index> CatalogueSearch::index() {
    prefetch();
    // Its own: a change replaces the other.
    const QFuture<Index> reading = m_index;
    co_return co_await reading;
}

} // namespace ondavia
