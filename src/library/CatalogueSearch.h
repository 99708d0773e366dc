#pragma once

#include "store/LiveQuery.h"

#include <QFuture>
#include <QObject>
#include <QThreadPool>
#include <qcoro/qcorotask.h>

#include <memory>

namespace ondavia {

class SearchIndex;

/// The search index over the stored catalogue, read on a thread beside the main one: dropped when the
/// catalogue changes, and read again then if anybody has wanted it. Main thread. Must not outlive the store;
/// its end waits for what is being read.
class CatalogueSearch final {
public:
    using Index = std::shared_ptr<const SearchIndex>;

    explicit CatalogueSearch(LibraryStore& store);

    /// Begins to read the index unless it is there or on its way, so that a search need not wait for it. One
    /// that could not be read is tried again.
    void prefetch();

    /// The index of the catalogue as it is now, when it has been read. Raises StoreError. The object may go
    /// meanwhile.
    QCoro::Task<Index> index();

private:
    LibraryStore& m_store;
    /// Of one thread: a catalogue that changes again while it is read is read once more, not twice at a time.
    QThreadPool m_pool;
    QFuture<Index> m_index;
    bool m_isWanted = false;
    QObject m_listener;
    ChangeListener m_changes;
};

} // namespace ondavia
