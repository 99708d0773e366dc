#pragma once

#include "entities/Channel.h"
#include "protocol/wire/SeriesRecords.h"

#include <string>
#include <vector>

namespace ondavia {

class XtreamAPIClient;

/// The playable item of an episode of the series `parent`, with a URL of `client`. Episodes are made when
/// they are needed and are no rows of the catalogue. Any thread.
[[nodiscard]] Channel makeEpisode(const XtreamEpisode& episode, const std::string& episodeId,
                                  const Channel& parent, const XtreamAPIClient& client);

/// The absolute texts of the episode's external subtitle files, in the provider's order; what is no URL is
/// left out. Any thread.
[[nodiscard]] std::vector<std::string> subtitleURLsOf(const XtreamEpisode& episode);

} // namespace ondavia
