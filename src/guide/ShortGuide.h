#pragma once

#include "entities/EPGProgram.h"
#include "protocol/wire/GuideRecords.h"

#include <span>
#include <string>
#include <vector>

namespace ondavia {

/// The usable listings of a stream's short guide as programmes of the channel `epgChannelId`, in order.
/// Titles and descriptions in Base64 are decoded, others stay as they came; dates are the device's local
/// time. Ids are `epgChannelId`, "_" and the listing's own start text; of listings with one id the first
/// counts. Any thread.
[[nodiscard]] std::vector<EPGProgram> programsFromListings(std::span<const XtreamEPGListing> listings,
                                                           const std::string& epgChannelId);

} // namespace ondavia
