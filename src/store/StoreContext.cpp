#include "store/StoreContext.h"

#include "store/Connection.h"
#include "store/GenerationFile.h"
#include "store/LibraryStore.h"
#include "store/StoreFolder.h"

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
    if (change.clearsFile) {
        std::erase_if(m_changes, [&change](const Change& earlier) { return earlier.file == change.file; });
    }
    m_changes.push_back(std::move(change));
}

void StoreContext::save() {
    checkThread();
    const std::vector<Change> changes = std::exchange(m_changes, {});
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
    std::vector<EntityKind> changed;
    std::exception_ptr failure;
    for (std::size_t index = 0; index < storeFileCount && !failure; ++index) {
        try {
            if (saves.at(index)) {
                saves.at(index)->commit();
                changed.insert(changed.end(), kinds.at(index).begin(), kinds.at(index).end());
            }
        } catch (const StoreError&) {
            failure = std::current_exception();
        }
    }
    // Who hears of a change may have replaced files closed, so no save may be open any more.
    saves = {};
    m_store.announce(changed);
    if (failure) {
        std::rethrow_exception(failure);
    }
}

std::unique_ptr<StoreContext::FileSave> StoreContext::beginSave(const Change& first) {
    if (first.clearsFile) {
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
