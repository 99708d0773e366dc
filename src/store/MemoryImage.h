#pragma once

#include <SQLiteCpp/Database.h>

#include <filesystem>
#include <string>

namespace ondavia {

/// Where the header of a file says whether a write-ahead log belongs to it, once for readers and once for
/// writers.
inline constexpr std::size_t journalBytes = 18;
inline constexpr char withoutLogFile = 1;
inline constexpr char withLogFile = 2;

/// The bytes of the file of `database` as its present transaction sees them, the log applied. Raises
/// SQLite::Exception.
[[nodiscard]] std::string imageOf(SQLite::Database& database);

/// A database in memory with the content of `image`, where no log can follow. Raises SQLite::Exception.
[[nodiscard]] SQLite::Database openImage(std::string image);

/// The whole content of a file; raises StoreError where it cannot be read.
[[nodiscard]] std::string readWholeFile(const std::filesystem::path& file);

} // namespace ondavia
