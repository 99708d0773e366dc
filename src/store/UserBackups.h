#pragma once

#include "store/UserRows.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace ondavia {

/// The backups of `user.db`, `user.db.backup-<day>` beside it: one a day at most, of which the last three are
/// kept. Any thread.
class UserBackups final {
public:
    static constexpr std::size_t kept = 3;

    explicit UserBackups(std::filesystem::path folder)
        : m_folder(std::move(folder)) {}

    /// Newest first.
    [[nodiscard]] std::vector<std::filesystem::path> files() const;
    /// The name that a backup of today has.
    [[nodiscard]] std::filesystem::path fileOfToday() const;

    /// Backs `user.db` up as it is now, unless there is a backup of today. A damaged file is not: it would
    /// push a good backup out. Raises StoreError or std::system_error.
    void make() const;

    /// Backs `user.db` up as it is now, in the place of a backup of today, and deletes every other copy of
    /// it, damaged and half-made ones too: what the user deletes on purpose is not to come back. Raises
    /// StoreError or std::system_error; before there is the new backup, the others are all there.
    void renew() const;

    struct Content final {
        std::filesystem::path file;
        UserRows rows;
    };
    /// The newest backup that is sound; absent where there is none.
    [[nodiscard]] std::optional<Content> readNewest() const;

private:
    void write() const;

    std::filesystem::path m_folder;
};

/// Where a damaged `user.db` is kept for whoever wants to look into it, newest first. The last three are. Of
/// a file that was gone there may be only the log.
[[nodiscard]] std::vector<std::filesystem::path> damagedCopies(const std::filesystem::path& folder);

/// Moves `user.db` and its log to a damaged copy, and deletes the oldest ones; absent when there was no
/// `user.db`. Raises StoreError.
std::optional<std::filesystem::path> keepDamagedFile(const std::filesystem::path& userFile);

} // namespace ondavia
