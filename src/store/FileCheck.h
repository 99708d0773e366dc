#pragma once

#include "store/EntityTraits.h"

#include <SQLiteCpp/Database.h>

#include <filesystem>
#include <string>

namespace ondavia {

enum class CheckDepth {
    /// Header, schema, and one row: a catalogue of 200 MB must not be read to be opened.
    Quick,
    /// Every page.
    Whole,
};

/// Raises StoreError if the file is damaged or of a later version; otherwise the file has the present
/// schema afterwards.
void checkFile(StoreFile kind, const std::filesystem::path& file, CheckDepth depth);

/// Reads every page of the database called `name`. Raises StoreError if one is damaged.
void requireSound(SQLite::Database& database, const std::string& name);

} // namespace ondavia
