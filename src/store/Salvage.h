#pragma once

#include "store/UserRows.h"

#include <filesystem>

namespace ondavia {

/// The rows that can still be read from a damaged file of the user's and the log beside it, either of which
/// may be missing. They stay as they are. Damage is no error; raises StoreError or std::system_error when
/// there is no room for a working copy.
///
/// The tree over the pages may be broken anywhere, and the first page, which tells where the trees begin,
/// too. So each leaf is taken for the root of a table in its turn, and SQLite reads what it holds; this finds
/// every row on every page that is whole, at a cost that grows with the file and no faster. (The recovery
/// that comes with SQLite's shell does the same, but Debian's library lacks the tables it needs.) A row
/// counts only if each of its values is of the column's kind and its id is the one that its other columns
/// make. A favourite whose own page is gone still has its id in the index, which is all of it but its date.
[[nodiscard]] UserRows salvageRows(const std::filesystem::path& file);

} // namespace ondavia
