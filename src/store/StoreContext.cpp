#include "store/StoreContext.h"

#include "store/Connection.h"
#include "store/GenerationFile.h"
#include "store/LibraryStore.h"
#include "store/StoreFolder.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace ondavia {

/// What one save does to one file, undone unless it is committed.
class StoreContext::FileSave {
public:
    virtual ~FileSave() = default;
    virtual Connection& connection() = 0;
    virtual void commit() = 0;
};

/// A transaction in the file as it is.
class StoreContext::TransactionSave final : public FileSave {
public:
    TransactionSave(StoreContext& context, StoreFile file)
        : m_connection(begin(context, file)) {}
    ~TransactionSave() override {
        if (!m_isCommitted) {
            m_connection.database().tryExec("ROLLBACK");
        }
    }

    Connection& connection() override { return m_connection; }
    void commit() override {
        m_connection.execute("COMMIT");
        m_isCommitted = true;
    }

private:
    /// A replacement may be published while the transaction waits for its turn; the rows then belong into
    /// the new generation.
    static Connection& begin(StoreContext& context, StoreFile file) {
        while (true) {
            Connection& connection = context.connection(file);
            connection.execute("BEGIN IMMEDIATE");
            if (connection.file() == context.m_store.folder().currentFile(file)) {
                return connection;
            }
            connection.execute("ROLLBACK");
        }
    }

    Connection& m_connection;
    bool m_isCommitted = false;
};

/// A new generation, for a save that leaves none of the present rows: what is deleted is gone from the
/// disk at once, at the price of a file's deletion.
class StoreContext::AnewSave final : public FileSave {
public:
    AnewSave(StoreContext& context, StoreFile file)
        : m_generation(context.m_store.folder(), file, context.m_store.options().maximumDownloadBytes) {
        m_generation.createIndexes();
    }

    Connection& connection() override { return m_generation.connection(); }
    void commit() override { m_generation.publish(); }

private:
    GenerationFile m_generation;
};

StoreContext::StoreContext(LibraryStore& store)
    : m_store(store) {}

StoreContext::~StoreContext() = default;

void StoreContext::enqueue(Change change) {
    checkThread();
    if (change.clearsFile()) {
        const auto isOfFile = [&change](const Change& earlier) { return earlier.file == change.file; };
        std::erase_if(m_changes, isOfFile);
        std::erase_if(m_keptChanges, isOfFile);
    }
    m_changes.push_back(std::move(change));
}

/// With what earlier saves of the same files left. Other files are not asked for what they failed to do.
std::vector<StoreContext::Change> StoreContext::takeChanges(OnFailure onFailure) {
    std::vector<Change> changes = std::exchange(m_changes, {});
    for (Change& change : changes) {
        change.onFailure = onFailure;
    }
    const auto goesAlong =
        std::stable_partition(m_keptChanges.begin(), m_keptChanges.end(), [&changes](const Change& kept) {
            return std::ranges::count(changes, kept.file, &Change::file) == 0;
        });
    changes.insert(changes.begin(), std::make_move_iterator(goesAlong),
                   std::make_move_iterator(m_keptChanges.end()));
    m_keptChanges.erase(goesAlong, m_keptChanges.end());
    return changes;
}

void StoreContext::keep(const std::vector<Change>& changes, const Outcome& outcome) {
    std::ranges::copy_if(changes, std::back_inserter(m_keptChanges), [&outcome](const Change& change) {
        return change.onFailure == OnFailure::Keep && std::ranges::count(outcome.changed, change.kind) == 0;
    });
}

void StoreContext::save(OnFailure onFailure) {
    checkThread();
    const std::vector<Change> changes = takeChanges(onFailure);
    Outcome outcome = write(changes);
    if (outcome.failure && std::ranges::all_of(changes, &Change::clearsFile)) {
        deleteFilesOf(changes);
        const Outcome again = write(changes);
        outcome = {outcome.changed, again.failure};
        std::ranges::transform(changes, std::back_inserter(outcome.changed), &Change::kind);
    }
    finish(changes, outcome);
}

void StoreContext::saveFor(const std::string& owner) {
    saveWhile([this, &owner] { m_store.requireOwner(owner); });
}

void StoreContext::saveForSomebody() {
    saveWhile([this] { m_store.requireSomebody(); });
}

void StoreContext::saveWhile(const std::function<void()>& requireOwner) {
    checkThread();
    const std::vector<Change> changes = std::exchange(m_changes, {});
    Outcome outcome;
    {
        const FolderLock::Section section(m_store.folder().lock());
        requireOwner();
        outcome = write(changes);
    }
    finish(changes, outcome);
}

StoreContext::Outcome StoreContext::write(const std::vector<Change>& changes) {
    Outcome outcome;
    try {
        std::array<std::unique_ptr<FileSave>, storeFileCount> saves;
        std::array<std::set<EntityKind>, storeFileCount> kinds;
        for (const Change& change : changes) {
            const auto index = static_cast<std::size_t>(change.file);
            if (!saves.at(index)) {
                saves.at(index) = beginSave(change);
            }
            change.apply(saves.at(index)->connection());
            kinds.at(index).insert(change.kind);
        }
        for (std::size_t index = 0; index < storeFileCount; ++index) {
            if (saves.at(index)) {
                saves.at(index)->commit();
                outcome.changed.insert(outcome.changed.end(), kinds.at(index).begin(), kinds.at(index).end());
            }
        }
    } catch (const StoreError&) {
        outcome.failure = std::current_exception();
    }
    return outcome;
}

/// What is to be empty can go before its successor is there, which is how a full device gets the room for
/// that. Whoever is killed in between leaves a link to nothing, and the next start begins with no rows.
void StoreContext::deleteFilesOf(const std::vector<Change>& changes) {
    StoreFolder& folder = m_store.folder();
    for (const Change& change : changes) {
        // An open file would keep its room.
        m_connections.at(static_cast<std::size_t>(change.file)).reset();
        const FolderLock::Section section(folder.lock());
        if (const auto file = folder.currentFile(change.file)) {
            deleteDatabase(*file);
        }
    }
}

/// No save may be open any more: who hears of a change may have replaced files closed.
void StoreContext::finish(const std::vector<Change>& changes, const Outcome& outcome) {
    keep(changes, outcome);
    std::vector<EntityKind> told = outcome.changed;
    std::erase_if(told, [&changes](EntityKind kind) {
        return std::ranges::none_of(changes, [kind](const Change& change) {
            return change.kind == kind && change.telling == Telling::Yes;
        });
    });
    m_store.announce(told);
    backUp(changes, outcome);
    if (outcome.failure) {
        std::rethrow_exception(outcome.failure);
    }
}

/// What the user deleted is to be gone from the copies too, whatever became of the other files.
void StoreContext::backUp(const std::vector<Change>& changes, const Outcome& outcome) {
    const auto isSaved = [&outcome](const Change& change) {
        return change.file == StoreFile::User && std::ranges::count(outcome.changed, change.kind) > 0;
    };
    const auto emptiesKind = [&](const Change& change) { return change.removesAll && isSaved(change); };
    if (std::ranges::any_of(changes, emptiesKind)) {
        m_store.renewBackups();
    } else if (std::ranges::any_of(changes, isSaved)) {
        m_store.backUp();
    }
}

std::unique_ptr<StoreContext::FileSave> StoreContext::beginSave(const Change& first) {
    if (first.clearsFile()) {
        return std::make_unique<AnewSave>(*this, first.file);
    }
    return std::make_unique<TransactionSave>(*this, first.file);
}

void StoreContext::closeReplacedFiles() {
    for (std::size_t index = 0; index < storeFileCount; ++index) {
        auto& connection = m_connections.at(index);
        if (connection && connection->file() != m_store.folder().currentFile(static_cast<StoreFile>(index))) {
            connection.reset();
        }
    }
}

void StoreContext::read(StoreFile file, const SqlText& text,
                        const std::function<void(SQLite::Statement&)>& receive) {
    checkThread();
    Connection& source = connection(file);
    source.guarded([&] {
        const StatementUse use(source.statement(text.sql));
        bindValues(use.statement(), text.values);
        while (use.statement().executeStep()) {
            receive(use.statement());
        }
    });
}

void StoreContext::checkThread() {
    if (m_thread == std::thread::id()) {
        m_thread = std::this_thread::get_id();
    }
    Q_ASSERT_X(m_thread == std::this_thread::get_id(), "StoreContext", "used on another thread than its own");
}

Connection& StoreContext::connection(StoreFile file) {
    const StoreFolder& folder = m_store.folder();
    auto& connection = m_connections.at(static_cast<std::size_t>(file));
    auto current = folder.currentFile(file);
    while (!connection || (current && connection->file() != *current)) {
        if (!current) {
            throw StoreError(StoreFailure::Inaccessible, "the folder of the store is gone");
        }
        connection.reset();
        try {
            connection = std::make_unique<Connection>(file, *current, ConnectionUse::Shared);
        } catch (const StoreError&) {
            // The file may have been replaced between the look at its name and its opening.
            if (folder.currentFile(file) == current) {
                throw;
            }
        }
        current = folder.currentFile(file);
    }
    return *connection;
}

} // namespace ondavia
