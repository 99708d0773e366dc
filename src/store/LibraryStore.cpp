#include "store/LibraryStore.h"

#include "store/StoreFolder.h"
#include "store/StoreOpening.h"

#include <QThread>

namespace ondavia {

std::unique_ptr<LibraryStore> LibraryStore::open(const std::filesystem::path& folder,
                                                 const StoreOptions& options) {
    auto storeFolder = std::make_unique<StoreFolder>(folder);
    OpenReport report = openFiles(*storeFolder);
    return std::unique_ptr<LibraryStore>(
        new LibraryStore(std::move(storeFolder), options, std::move(report)));
}

LibraryStore::LibraryStore(std::unique_ptr<StoreFolder> folder, const StoreOptions& options,
                           OpenReport report)
    : m_folder(std::move(folder))
    , m_options(options)
    , m_report(std::move(report))
    , m_mainContext(*this) {}

LibraryStore::~LibraryStore() = default;

std::unique_ptr<StoreContext> LibraryStore::makeContext() {
    return std::make_unique<StoreContext>(*this);
}

void LibraryStore::announce(const std::vector<EntityKind>& kinds) {
    if (QThread::currentThread() == thread()) {
        announceNow(kinds);
        return;
    }
    QMetaObject::invokeMethod(
        this, [this, kinds] { announceNow(kinds); }, Qt::QueuedConnection);
}

void LibraryStore::announceNow(const std::vector<EntityKind>& kinds) {
    // An idle context would keep the disk space of rows that nobody can see any more.
    m_mainContext.closeReplacedFiles();
    for (const EntityKind kind : kinds) {
        Q_EMIT changed(kind);
    }
}

} // namespace ondavia
