#pragma once

#include <QFuture>
#include <QObject>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace ondavia {

class LibraryStore;

/// What the stored catalogue holds, by type and group, counted once and again after a change: each count
/// goes over every row of a type, and at the start everybody asks for the same ones. Main thread. Must not
/// outlive the store.
class CatalogueSummary final {
public:
    using Groups = std::vector<std::pair<std::string, std::int64_t>>;

    explicit CatalogueSummary(LibraryStore& store);

    /// Counts everything on the thread pool, so that whoever asks later need not: what was asked for
    /// meanwhile waits for it. Must have ended before the store goes.
    void prefetch();

    /// The group titles of "live", "movie" or "series", ascending, each with its number of rows. Raises
    /// StoreError.
    [[nodiscard]] const Groups& groups(const std::string& type);
    /// Rows of a type. Raises StoreError.
    [[nodiscard]] std::int64_t count(const std::string& type);

private:
    using GroupsByType = std::map<std::string, Groups>;

    LibraryStore& m_store;
    GroupsByType m_groups;
    QFuture<GroupsByType> m_prefetched;
    QObject m_listener;
};

} // namespace ondavia
