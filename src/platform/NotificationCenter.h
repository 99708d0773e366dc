#pragma once

#include <QVariantMap>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace ondavia {

struct Notification final {
    std::string name;
    /// Who posted it; compared, never used.
    const void* object = nullptr;
    QVariantMap userInfo;
};

/// Hands notifications from whoever posts them to whoever asked for them. Handlers run on the thread
/// that posts. All operations may be called from any thread; a handler may add and remove observers.
/// After `removeObserver` returns, a handler that is already running on another thread may still finish:
/// handlers hold their owner weakly.
class NotificationCenter final {
public:
    using Handler = std::function<void(const Notification&)>;

    void addObserver(const void* observer, std::string name, const void* object, Handler handler);
    /// Removes `observer` for every name with this object.
    void removeObserver(const void* observer, const void* object);
    void post(const Notification& notification);

private:
    struct Entry {
        const void* observer;
        std::string name;
        const void* object;
        std::shared_ptr<Handler> handler;
    };

    std::mutex m_mutex;
    std::vector<Entry> m_entries;
};

} // namespace ondavia
