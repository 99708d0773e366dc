#pragma once

namespace ondavia {

/// Sends what Qt says (warnings of the network and of QML, which may quote a URL) through AppLogger, so
/// that its secrets are masked. Call before the application object is made.
void routeQtMessages();

} // namespace ondavia
