#pragma once

#include "platform/URLSession.h"

#include <memory>
#include <qcoro/qcorotask.h>
#include <string>

namespace ondavia::cli {

/// The first `bytes` bytes of what stands at `url`, or all of it where that is less; the rest is not fetched.
/// Raises XtreamError for a text that is no URL and for a status outside 200...299, and URLError.
QCoro::Task<std::string> fetchHead(std::shared_ptr<URLSession> session, std::string url, std::size_t bytes);

} // namespace ondavia::cli
