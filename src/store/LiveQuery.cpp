#include "store/LiveQuery.h"

#include "base/AppLogger.h"

namespace ondavia {

ChangeListener::ChangeListener(LibraryStore& store, EntityKind kind, std::function<void()> onChange)
    : m_onChange(std::move(onChange)) {
    connect(&store, &LibraryStore::changed, this, [this, kind](EntityKind changedKind) {
        if (changedKind == kind) {
            schedule();
        }
    });
}

void ChangeListener::schedule() {
    if (std::exchange(m_isScheduled, true)) {
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isScheduled = false;
            m_onChange();
        },
        Qt::QueuedConnection);
}

void logFailedQuery(const StoreError& error) {
    AppLogger::general.error("Live query failed: %s", {error.what()});
}

} // namespace ondavia
