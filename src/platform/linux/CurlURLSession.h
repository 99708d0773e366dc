#pragma once

#include "platform/URLSession.h"

#include <chrono>

namespace ondavia {

/// A session on libcurl: HTTP/2, compressed replies, TLS verification on, no cache, no cookies kept, the
/// proxies of the environment. Each transfer has a thread of its own, on which its reader is called: a
/// slow reader stops the reading from the socket, and the sender with it. (Qt's network classes go on
/// reading into memory however slow the reader is.)
[[nodiscard]] std::shared_ptr<URLSession>
makeCurlURLSession(const URLSessionConfiguration& configuration = {});

/// Ends every running transfer of the process and waits until their readers are at rest, or for 3 seconds;
/// whether they are. Each fails with a URLError, and so does every later one. For the end of the process,
/// before what the readers write to goes away, and after those were told that wait for anything. Main
/// thread.
[[nodiscard]] bool endAllTransfers();

/// Waits until no transfer is running; false when one still is after `timeout`.
bool waitForTransfers(std::chrono::milliseconds timeout);

} // namespace ondavia
