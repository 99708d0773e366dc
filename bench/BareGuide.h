#pragma once

#include <filesystem>
#include <string>

namespace ondavia::bench {

/// The least that the job needs, by the bare libraries and one after the other: libcurl downloads the
/// document into memory; expat reads it whole, with minimal handlers whose rows go straight into SQLite, in
/// one transaction without a journal; one index on channel, start and stop follows. Dates are fourteen
/// digits and an offset, ids a counter; nothing is trimmed or checked, nothing kept on failure.
void runBareGuide(const std::string& url, const std::filesystem::path& file);

} // namespace ondavia::bench
