#pragma once

#include "store/Connection.h"
#include "store/StoreFolder.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace ondavia {

/// A new generation of a file of downloaded rows, from its making to its publication. Deleted when it goes
/// unpublished. One thread at a time.
class GenerationFile final {
public:
    /// An empty table in one open transaction, to be bounded by `maximumBytes`. Raises StoreError.
    GenerationFile(StoreFolder& folder, StoreFile kind, std::int64_t maximumBytes);
    ~GenerationFile();
    GenerationFile(const GenerationFile&) = delete;
    GenerationFile& operator=(const GenerationFile&) = delete;

    [[nodiscard]] Connection& connection() { return *m_connection; }
    [[nodiscard]] const std::filesystem::path& file() const { return m_file; }

    /// Makes the indexes over the rows. Raises StoreError.
    void createIndexes();

    /// Ends the transaction and puts the file, which has its indexes, in place of the current one, for
    /// `owner` if one is named. Takes the folder's lock. Raises StoreError.
    void publish(const std::optional<std::string>& owner = {});
    /// The same within a section of the lock.
    void publish(const FolderLock::Section& section);

private:
    void close();

    StoreFolder& m_folder;
    StoreFile m_kind;
    std::filesystem::path m_file;
    std::unique_ptr<Connection> m_connection;
    bool m_isPublished = false;
};

} // namespace ondavia
