#pragma once

#include "store/LibraryStore.h"

#include <QObject>

#include <functional>
#include <utility>
#include <vector>

namespace ondavia {

/// Calls back when a kind changed: once, on the main thread in a later turn of its event loop, however
/// many changes there were since. Must not outlive the store. Main thread.
class ChangeListener final : public QObject {
public:
    ChangeListener(LibraryStore& store, EntityKind kind, std::function<void()> onChange);

    /// Calls back in a later turn of the event loop, together with the changes of this one.
    void schedule();

private:
    std::function<void()> m_onChange;
    bool m_isScheduled = false;
};

void logFailedQuery(const StoreError& error);

/// A query and its present result: runs when made, and again after each change of its kind, several
/// changes in one turn of the event loop together. A run that fails is logged and leaves the result as it
/// was. Must not outlive the store. Main thread.
template<Entity T> class LiveQuery final {
public:
    /// `onChange` is called after each later run; the first one is through when the constructor returns.
    LiveQuery(LibraryStore& store, Query<T> query, std::function<void()> onChange = {})
        : m_store(store)
        , m_query(std::move(query))
        , m_onChange(std::move(onChange))
        , m_listener(store, EntityTraits<T>::kind, [this] { refresh(); }) {
        run();
    }
    LiveQuery(const LiveQuery&) = delete;
    LiveQuery& operator=(const LiveQuery&) = delete;

    [[nodiscard]] const std::vector<T>& results() const { return m_results; }

    /// Takes another query, which runs in a later turn of the event loop.
    void setQuery(Query<T> query) {
        m_query = std::move(query);
        m_listener.schedule();
    }

private:
    void run() {
        try {
            m_results = m_store.mainContext().fetch(m_query);
        } catch (const StoreError& error) {
            logFailedQuery(error);
        }
    }
    void refresh() {
        run();
        if (m_onChange) {
            m_onChange();
        }
    }

    LibraryStore& m_store;
    Query<T> m_query;
    std::function<void()> m_onChange;
    std::vector<T> m_results;
    ChangeListener m_listener;
};

} // namespace ondavia
