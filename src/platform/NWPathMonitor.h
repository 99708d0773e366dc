#pragma once

#include <functional>

namespace ondavia {

struct NWPath final {
    /// The path's status is satisfied.
    bool satisfied = true;
    bool isExpensive = false;
};

/// Tells about the network path. On Linux QNetworkInformation; without a back end, and where the back
/// end cannot tell, the path is satisfied.
class NWPathMonitor {
public:
    using UpdateHandler = std::function<void(const NWPath&)>;

    virtual ~NWPathMonitor() = default;
    /// The handler is called on a thread of the monitor's choice. Set before `start`.
    virtual void setPathUpdateHandler(UpdateHandler handler) = 0;
    /// Reports the present path, then each change.
    virtual void start() = 0;
};

} // namespace ondavia
