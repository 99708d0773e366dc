#include "screens/browse/ChannelRowCache.h"

#include "base/AppLogger.h"
#include "store/LibraryStore.h"

namespace ondavia {

namespace {

constexpr int cachedRows = 400;

} // namespace

ChannelRowCache::ChannelRowCache(LibraryStore& store)
    : m_store(store)
    , m_rows(cachedRows) {}

const Channel* ChannelRowCache::row(std::int64_t key) {
    if (const Channel* known = m_rows.object(key)) {
        return known;
    }
    try {
        if (auto read = m_store.mainContext().fetchByKey<Channel>(key)) {
            m_rows.insert(key, new Channel(std::move(*read)));
        }
    } catch (const StoreError& error) {
        AppLogger::general.error("A title could not be read: %s", {error.what()});
    }
    return m_rows.object(key);
}

} // namespace ondavia
