#include "screens/liveplayer/ChannelNumberEntry.h"
#include "style/ShownText.h"

namespace ondavia {

ChannelNumberEntry::ChannelNumberEntry(std::shared_ptr<const LiveChannels> channels, Scheduler& scheduler)
    : m_channels(std::move(channels))
    , m_scheduler(scheduler) {}

std::optional<std::size_t> ChannelNumberEntry::place() const {
    return m_channels->withNumber(digits().toLongLong());
}

QString ChannelNumberEntry::channelName() const {
    const auto found = isTyping() ? place() : std::nullopt;
    return found ? shownText(m_channels->at(*found).name) : QString();
}

void ChannelNumberEntry::type(int digit) {
    if (digits().size() < maximumDigits) {
        setDigits(digits() + QString::number(digit));
    }
    m_timer = m_scheduler.once(seconds, [this] { confirm(); });
}

void ChannelNumberEntry::confirm() {
    const auto wanted = place();
    cancel();
    if (wanted) {
        Q_EMIT chosen(*wanted);
    }
}

void ChannelNumberEntry::cancel() {
    m_timer.reset();
    setDigits({});
}

} // namespace ondavia
