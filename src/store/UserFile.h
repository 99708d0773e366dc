#pragma once

#include "store/OpenReport.h"
#include "store/StoreFolder.h"

namespace ondavia {

/// Leaves a sound `user.db` of the present schema in the folder, within a section of its lock. One that is
/// damaged, or gone though there was one, is made anew from all that is left: the rows that can still be read
/// from it, and those of the newest sound backup. Only who is `alone` may do that. Raises StoreError or
/// std::system_error; the old file is then where it was.
[[nodiscard]] OpenReport openUserFile(StoreFolder& folder, bool alone);

} // namespace ondavia
