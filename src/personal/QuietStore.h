#pragma once

#include "base/AppLogger.h"
#include "store/StoreContext.h"

#include <vector>

// For the sources of this room only: nobody is told of failures with the user's own rows but the log.

namespace ondavia {

/// The rows of `query`; none where the store cannot be read: a row more or less is no reason to trouble
/// anybody.
template<Entity T> std::vector<T> fetchQuietly(StoreContext& context, const Query<T>& query) {
    try {
        return context.fetch(query);
    } catch (const StoreError& error) {
        AppLogger::general.error("personal library: %s", {error.what()});
        return {};
    }
}

/// The first row of `query`, likewise.
template<Entity T> std::optional<T> fetchFirstQuietly(StoreContext& context, Query<T> query) {
    query.limit = 1;
    std::vector<T> rows = fetchQuietly(context, query);
    return rows.empty() ? std::optional<T>() : std::optional<T>(std::move(rows.front()));
}

/// What cannot be written goes along with the context's next save: the user wants it as soon as it can be
/// done, and can do nothing about it.
inline void saveQuietly(StoreContext& context) {
    try {
        context.save(OnFailure::Keep);
    } catch (const StoreError& error) {
        AppLogger::general.error("personal library: %s", {error.what()});
    }
}

} // namespace ondavia
