#pragma once

#include "store/EntityTraits.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace ondavia {

/// What `LibraryStore::open` found broken and did about it.
struct OpenReport final {
    /// Where the user's damaged file was kept. Favourites, history and playlist start with the rows that
    /// could still be read from it.
    std::optional<std::filesystem::path> damagedUserFile;
    /// How many rows those are.
    std::int64_t salvagedRows = 0;
    /// Downloaded files that were damaged and start empty.
    std::vector<StoreFile> rebuiltFiles;
};

} // namespace ondavia
