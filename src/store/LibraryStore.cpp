#include "store/LibraryStore.h"

#include "base/AppLogger.h"
#include "store/LibraryOwner.h"
#include "store/StoreFolder.h"
#include "store/StoreOpening.h"
#include "store/UserBackups.h"

#include <QThread>

namespace ondavia {

std::unique_ptr<LibraryStore> LibraryStore::open(const std::filesystem::path& folder,
                                                 const StoreOptions& options) {
    auto storeFolder = std::make_unique<StoreFolder>(folder);
    OpenReport report = openFiles(*storeFolder);
    std::unique_ptr<LibraryStore> store(new LibraryStore(std::move(storeFolder), options, std::move(report)));
    store->backUp();
    return store;
}

LibraryStore::LibraryStore(std::unique_ptr<StoreFolder> folder, const StoreOptions& options,
                           OpenReport report)
    : m_folder(std::move(folder))
    , m_options(options)
    , m_report(std::move(report))
    , m_owner(ownerOf(m_folder->path()))
    , m_mainContext(*this) {}

LibraryStore::~LibraryStore() = default;

std::unique_ptr<StoreContext> LibraryStore::makeContext() {
    return std::make_unique<StoreContext>(*this);
}

void LibraryStore::backUp() {
    const UserBackups backups(m_folder->path());
    const std::lock_guard lock(m_backupMutex);
    if (std::filesystem::path today = backups.fileOfToday(); m_lastBackup != today) {
        m_lastBackup = std::move(today);
        startBackup([backups] { backups.make(); });
    }
}

void LibraryStore::renewBackups() {
    const UserBackups backups(m_folder->path());
    const std::lock_guard lock(m_backupMutex);
    m_lastBackup = backups.fileOfToday();
    startBackup([backups] { backups.renew(); });
}

void LibraryStore::startBackup(std::function<void()> run) {
    // One at a time: the earlier one may hold what the later one is to delete.
    m_backup = {};
    m_backup = std::jthread([run = std::move(run)] {
        try {
            run();
        } catch (const std::runtime_error& error) {
            AppLogger::general.error("user.db was not backed up: %s", {error.what()});
        }
    });
}

void LibraryStore::setOwner(const std::string& owner) {
    const FolderLock::Section section(m_folder->lock());
    writeOwner(m_folder->path(), owner, section);
    m_owner = owner;
}

void LibraryStore::claim(const std::string& owner) {
    const FolderLock::Section section(m_folder->lock());
    if (ownerOf(m_folder->path()) == m_owner) {
        writeOwner(m_folder->path(), owner, section);
        m_owner = owner;
    }
}

std::optional<std::string> LibraryStore::owner() const {
    return ownerOf(m_folder->path());
}

void LibraryStore::requireOwner(const std::string& owner) const {
    ondavia::requireOwner(m_folder->path(), owner);
}

void LibraryStore::requireSomebody() const {
    if (owner() == nobody) {
        throw StoreError(StoreFailure::NotOwner, "nobody is signed in any more, so nothing was stored");
    }
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
