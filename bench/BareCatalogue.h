#pragma once

#include <filesystem>
#include <string>

namespace ondavia::bench {

/// The least that the job needs, by the bare libraries and one after the other: each of the six lists is
/// downloaded by libcurl, parsed whole by simdjson and inserted row by row into SQLite in one transaction
/// without a journal; the indexes follow. No check of types, no title cleaning, nothing kept on failure.
void runBareCatalogue(const std::string& serverUrl, const std::filesystem::path& file);

} // namespace ondavia::bench
