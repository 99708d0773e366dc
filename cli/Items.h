#pragma once

#include "cli/Output.h"
#include "entities/Channel.h"
#include "protocol/wire/SeriesRecords.h"

#include <qcoro/qcorotask.h>

#include <string>
#include <vector>

namespace ondavia {
class Services;
class XtreamAPIClient;
} // namespace ondavia

namespace ondavia::cli {

/// The catalogue's item of this id. Raises CommandError without one.
[[nodiscard]] Channel requireItem(Services& services, const std::string& id);

/// The series of this id, or of this number at the provider. Raises CommandError.
[[nodiscard]] Channel requireSeries(Services& services, const std::string& idOrNumber);

/// For a list of items.
[[nodiscard]] Output::Table tableOfItems(Output& output);

/// The episodes of `parent` by season and in the provider's order, as items to play. Those without an id
/// cannot be played and are left out.
[[nodiscard]] std::vector<Channel> episodesOf(const XtreamSeriesInfo& info, const Channel& parent,
                                              const XtreamAPIClient& client);

/// Raises CommandError for a series, which has no stream of its own.
void requireStream(const Channel& item);

/// The item of this id, an episode included: that one is asked for at the provider. Raises CommandError.
/// `services` outlives the task.
QCoro::Task<Channel> findItem(Services& services, std::string id);

} // namespace ondavia::cli
