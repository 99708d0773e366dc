#pragma once

#include "platform/URLSession.h"

namespace ondavia {

/// A session on libcurl: HTTP/2, compressed replies, TLS verification on, no cache, no cookies kept, the
/// proxies of the environment. Each transfer has a thread of its own, on which its reader is called: a
/// slow reader stops the reading from the socket, and the sender with it. (Qt's network classes go on
/// reading into memory however slow the reader is.) The domain of its errors is "CURL".
[[nodiscard]] std::shared_ptr<URLSession>
makeCurlURLSession(const URLSessionConfiguration& configuration = {});

} // namespace ondavia
