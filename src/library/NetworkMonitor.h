#pragma once

#include "base/Observable.h"

#include <QObject>

#include <memory>

namespace ondavia {

class NWPathMonitor;

/// Whether there is a usable network path, and whether it is an expensive one. Both fields are written and
/// read on the main thread; before the first report the path counts as usable, so that nothing is held
/// back.
class NetworkMonitor final : public QObject {
    Q_OBJECT

    ONDAVIA_OBSERVABLE(bool, isConnected, setIsConnected, true);
    ONDAVIA_OBSERVABLE(bool, isExpensive, setIsExpensive, false);

public:
    /// Starts the observer, which is never stopped.
    explicit NetworkMonitor(std::unique_ptr<NWPathMonitor> monitor);
    ~NetworkMonitor() override;

private:
    std::unique_ptr<NWPathMonitor> m_monitor;
};

} // namespace ondavia
