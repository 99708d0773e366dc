#pragma once

#include "store/OpenReport.h"
#include "store/StoreFolder.h"

namespace ondavia {

/// Leaves three sound files of the present schema in the folder, as `LibraryStore::open` promises. Takes
/// the folder's lock. Raises StoreError.
[[nodiscard]] OpenReport openFiles(StoreFolder& folder);

} // namespace ondavia
