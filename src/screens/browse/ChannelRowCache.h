#pragma once

#include "entities/Channel.h"

#include <QCache>

#include <cstdint>

namespace ondavia {

class LibraryStore;

/// Rows of the catalogue by their keys, read when a list shows them; those in sight and some around them are
/// kept. A read that fails is logged and gives no row. Main thread.
class ChannelRowCache final {
public:
    /// `store` must outlive the object.
    explicit ChannelRowCache(LibraryStore& store);

    /// Null when the row is gone. Holds until the next call.
    [[nodiscard]] const Channel* row(std::int64_t key);
    void clear() { m_rows.clear(); }

private:
    LibraryStore& m_store;
    QCache<std::int64_t, Channel> m_rows;
};

} // namespace ondavia
