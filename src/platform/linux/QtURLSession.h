#pragma once

#include "platform/URLSession.h"

namespace ondavia {

/// A session on Qt Network: HTTP/2, compressed replies, TLS verification on, no cache, no cookies kept.
/// The domain of its errors is "QNetworkReply".
[[nodiscard]] std::shared_ptr<URLSession> makeQtURLSession(const URLSessionConfiguration& configuration = {});

} // namespace ondavia
