#pragma once

#include "store/EntityTraits.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace ondavia {

/// What `LibraryStore::open` found broken and did about it.
struct OpenReport final {
    /// Whether the user's file was damaged, or gone though there was one: favourites, history and playlist
    /// were made anew from what was left.
    bool isUserFileRestored = false;
    /// Where the damaged file was kept; absent when it was gone.
    std::optional<std::filesystem::path> damagedUserFile;
    /// How many rows could still be read from it.
    std::int64_t salvagedRows = 0;
    /// The backup that was drawn on; absent where there was none.
    std::optional<std::filesystem::path> backup;
    /// How many rows only the backup had.
    std::int64_t backupRows = 0;
    /// Whether the device had no room left for anything new.
    bool isDiskFull = false;
    /// Downloaded files that were damaged and start empty.
    std::vector<StoreFile> rebuiltFiles;
};

} // namespace ondavia
