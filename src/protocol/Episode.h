#pragma once

#include "entities/Channel.h"
#include "protocol/wire/SeriesRecords.h"

#include <string>

namespace ondavia {

class XtreamAPIClient;

/// The playable item of an episode of the series `parent`, with a URL of `client`. Episodes are made when
/// they are needed and are no rows of the catalogue. Any thread.
[[nodiscard]] Channel makeEpisode(const XtreamEpisode& episode, const std::string& episodeId,
                                  const Channel& parent, const XtreamAPIClient& client);

} // namespace ondavia
