#pragma once

#include "store/StoreContext.h"

#include <QFuture>
#include <QObject>
#include <QThreadPool>
#include <qcoro/qcorotask.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace ondavia {

class LibraryStore;

/// What the stored catalogue holds, by type and group, counted once and again after a change: each count
/// goes over every row of a type, and at the start everybody asks for the same ones. Main thread. Must not
/// outlive the store; its end waits for what is being counted.
class CatalogueSummary final {
public:
    using Groups = std::vector<KeyGroup>;

    /// So many rows of a group are known by their keys, in the order of their numbers.
    static constexpr std::size_t firstRows = 15;

    explicit CatalogueSummary(LibraryStore& store);

    /// Counts everything on a thread of its own, so that whoever asks later need not: what was asked for
    /// meanwhile waits for it.
    void prefetch();
    /// Whether nobody who asks now would have to wait.
    [[nodiscard]] bool isReady() const {
        return m_isCounted || (m_prefetched.isValid() && m_prefetched.isFinished());
    }
    /// Done when nobody who asks would have to wait. The object may go meanwhile.
    QCoro::Task<void> ready();

    /// The group titles of "live", "movie" or "series", ascending. Raises StoreError.
    [[nodiscard]] const Groups& groups(const std::string& type);
    /// Rows of a type. Raises StoreError.
    [[nodiscard]] std::int64_t count(const std::string& type);

private:
    using GroupsByType = std::map<std::string, Groups>;

    LibraryStore& m_store;
    QThreadPool m_pool;
    GroupsByType m_groups;
    /// All types are among the groups.
    bool m_isCounted = false;
    QFuture<GroupsByType> m_prefetched;
    QObject m_listener;
};

} // namespace ondavia
