#include "store/GenerationFile.h"

#include "store/LibraryOwner.h"
#include "store/Schema.h"

namespace ondavia {

GenerationFile::GenerationFile(StoreFolder& folder, StoreFile kind, std::int64_t maximumBytes)
    : m_folder(folder)
    , m_kind(kind)
    , m_file(folder.createGeneration(kind)) {
    try {
        m_connection = std::make_unique<Connection>(kind, m_file, ConnectionUse::Building);
        const std::int64_t pageBytes = m_connection->guarded(
            [this] { return m_connection->database().execAndGet("PRAGMA page_size").getInt64(); });
        const FileSchema& schema = schemaOf(kind);
        m_connection->execute("PRAGMA max_page_count = " + std::to_string(maximumBytes / pageBytes) +
                              "; BEGIN;" + schema.createTables +
                              "PRAGMA user_version = " + std::to_string(schema.version));
    } catch (...) {
        m_connection.reset();
        deleteDatabase(m_file);
        throw;
    }
}

GenerationFile::~GenerationFile() {
    m_connection.reset();
    if (!m_isPublished) {
        deleteDatabase(m_file);
    }
}

void GenerationFile::createIndexes() {
    m_connection->execute(schemaOf(m_kind).createIndexes);
}

void GenerationFile::publish(const std::optional<std::string>& owner) {
    close();
    const FolderLock::Section section(m_folder.lock());
    if (owner) {
        requireOwner(m_folder.path(), *owner);
    }
    publish(section);
}

void GenerationFile::publish(const FolderLock::Section&) {
    close();
    m_folder.publish(m_kind, m_file);
    m_isPublished = true;
}

void GenerationFile::close() {
    // From here on readers and single writers share the file, so it goes over to a write-ahead log.
    if (m_connection) {
        m_connection->execute("COMMIT; PRAGMA journal_mode = WAL");
        m_connection.reset();
    }
}

} // namespace ondavia
