#pragma once

#include <filesystem>

namespace ondavia {

/// Where the application keeps what it keeps. With ONDAVIA_DATA_DIR everything lies under that one
/// folder; without it in the user's XDG directories.
struct DataFolders final {
    /// Reads the environment. The folders are made with mode 0700; throws std::filesystem::filesystem_error
    /// where that fails.
    [[nodiscard]] static DataFolders fromEnvironment();

    /// The library's database files.
    std::filesystem::path store;
    /// The settings file.
    std::filesystem::path settings;
    /// What may be deleted at any time.
    std::filesystem::path cache;
    /// The file vault, where one is asked for.
    std::filesystem::path vault;
};

} // namespace ondavia
