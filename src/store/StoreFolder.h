#pragma once

#include "store/EntityTraits.h"
#include "store/FolderLock.h"

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <set>
#include <vector>

namespace ondavia {

/// The folder of a store and the files in it.
///
/// `user.db` is one file for ever. `catalogue.db` and `guide.db` are symbolic links to the present
/// generation of their rows, `catalogue-<number>-<time>.db`. Whatever replaces all rows writes a file of
/// its own, which nobody else sees, and then has the link renamed over: no journal, no wait for readers or
/// other writers, nothing to undo, and whoever is killed in between leaves a file that the next start
/// deletes. Writing into a staging table of the same file was the other way; it puts every page through
/// the write-ahead log, holds up the writers of single rows, and has to free the pages of the old rows
/// one by one. Connections notice a new generation at their next operation, by reading the link.
///
/// Any thread.
class StoreFolder final {
public:
    /// Makes the folder if needed and lets only its owner in. Raises StoreError.
    explicit StoreFolder(std::filesystem::path path);

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
    [[nodiscard]] FolderLock& lock() { return m_lock; }

    [[nodiscard]] std::filesystem::path userFile() const { return m_path / "user.db"; }

    /// The file that holds the rows now; absent when the link leads nowhere.
    [[nodiscard]] std::optional<std::filesystem::path> currentFile(StoreFile kind) const;

    /// A new, empty file for the next generation, known to nobody. Raises StoreError.
    [[nodiscard]] std::filesystem::path createGeneration(StoreFile kind);

    /// Makes `generation` the current file and deletes the one before. Within a section of the lock: two at
    /// a time would both delete the file before, and leave one of their own behind. Raises StoreError.
    void publish(StoreFile kind, const std::filesystem::path& generation);

    /// Turns a plain file in the place of the link into a generation. Within a section of the lock.
    void adoptPlainFile(StoreFile kind);

    /// Deletes what killed processes left. Only for who is alone, within a section of the lock.
    void deleteAbandonedFiles();

private:
    [[nodiscard]] std::filesystem::path linkPath(StoreFile kind) const;
    [[nodiscard]] std::filesystem::path nextGeneration(StoreFile kind) const;
    /// Of every generation in the folder, published or not.
    [[nodiscard]] std::set<std::int64_t> generationNumbers(StoreFile kind) const;
    void link(StoreFile kind, const std::filesystem::path& generation) const;

    std::filesystem::path m_path;
    FolderLock m_lock;
    std::mutex m_creating;
};

/// Deletes a database file and what SQLite and the store keep beside it. The database goes first: without
/// it the others are nothing, but a log without its database could meet another one.
void deleteDatabase(const std::filesystem::path& file);

/// The number of a generation, from 0 to 999; successive ones differ.
[[nodiscard]] std::int64_t generationNumber(const std::filesystem::path& file);

/// Makes an empty file that only its owner can read; false if it is there already. Raises StoreError.
bool createPrivateFile(const std::filesystem::path& file);

} // namespace ondavia
