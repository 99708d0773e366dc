#pragma once

#include "base/Observable.h"
#include "platform/Scheduler.h"
#include "screens/liveplayer/LiveChannels.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

#include <memory>

namespace ondavia {

/// The number that the viewer types to get a channel: digits that follow each other within two seconds belong
/// together, and two seconds after the last one the number holds. Main thread.
class ChannelNumberEntry final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the live player")
    /// What has been typed so far; empty when nothing is being typed.
    Q_PROPERTY(QString digits READ digits NOTIFY digitsChanged)
    /// Which channel that is; empty for none.
    Q_PROPERTY(QString channelName READ channelName NOTIFY digitsChanged)

    ONDAVIA_OBSERVABLE(QString, digits, setDigits);

public:
    static constexpr double seconds = 2.0;
    /// What is typed beyond so many is not taken.
    static constexpr int maximumDigits = 9;

    /// `scheduler` must outlive the object.
    ChannelNumberEntry(std::shared_ptr<const LiveChannels> channels, Scheduler& scheduler);

    [[nodiscard]] bool isTyping() const { return !digits().isEmpty(); }
    [[nodiscard]] QString channelName() const;

    void type(int digit);
    /// The number holds at once.
    Q_INVOKABLE void confirm();
    void cancel();

    /// The place of the channel that was wanted, among all channels. Not emitted where there is none of that
    /// number.
    Q_SIGNAL void chosen(std::size_t place);

private:
    [[nodiscard]] std::optional<std::size_t> place() const;

    std::shared_ptr<const LiveChannels> m_channels;
    Scheduler& m_scheduler;
    std::unique_ptr<ScheduledTimer> m_timer;
};

} // namespace ondavia
