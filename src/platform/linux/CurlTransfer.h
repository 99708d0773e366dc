#pragma once

#include "platform/URLSession.h"

#include <functional>
#include <string>
#include <vector>

namespace ondavia {

struct TransferRequest final {
    /// Encoded. Holds the account: never to be logged.
    std::string url;
    std::vector<URLSession::Header> headers;
    /// Bytes after inflation.
    std::size_t maximumBody = 0;
    URLSessionConfiguration configuration;
};

/// Runs one GET from start to end on the calling thread, which calls `reader`. Ends early when
/// `isStopped`, which is asked about once a second and more often, says so. Raises URLError, or what the
/// reader threw.
void performTransfer(const TransferRequest& request, URLBodyReader& reader,
                     const std::function<bool()>& isStopped);

} // namespace ondavia
