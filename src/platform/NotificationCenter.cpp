#include "platform/NotificationCenter.h"

namespace ondavia {

void NotificationCenter::addObserver(const void* observer, std::string name, const void* object,
                                     Handler handler) {
    const std::lock_guard lock(m_mutex);
    m_entries.push_back({observer, std::move(name), object, std::make_shared<Handler>(std::move(handler))});
}

void NotificationCenter::removeObserver(const void* observer, const void* object) {
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_entries,
                  [&](const Entry& entry) { return entry.observer == observer && entry.object == object; });
}

void NotificationCenter::post(const Notification& notification) {
    std::vector<std::shared_ptr<Handler>> handlers;
    {
        const std::lock_guard lock(m_mutex);
        for (const auto& entry : m_entries) {
            if (entry.name == notification.name && entry.object == notification.object) {
                handlers.push_back(entry.handler);
            }
        }
    }
    for (const auto& handler : handlers) {
        (*handler)(notification);
    }
}

} // namespace ondavia
