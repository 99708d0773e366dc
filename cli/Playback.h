#pragma once

#include "cli/Output.h"
#include "entities/Channel.h"

#include <QObject>

#include <memory>
#include <qcoro/qcorotask.h>
#include <stop_token>

namespace ondavia {
class FSPlayer;
class Services;
} // namespace ondavia

namespace ondavia::cli {

/// One item in the player, and a line for everything that the player tells. Main thread.
class Playback final : public QObject {
    Q_OBJECT

public:
    /// Both outlive the object.
    Playback(Services& services, Output& output);
    ~Playback() override;

    /// Plays from `from` for `seconds`, or to the end of the item. Raises CommandError when nothing was
    /// played in that time.
    QCoro::Task<void> run(Channel item, double from, double seconds);

private:
    void observeEngine();
    void forgetEngine();
    void observe(const char* notification, void (Playback::*told)(int reason));
    void stateChanged(int reason);
    void firstFrameShown(int reason);
    void finished(int reason);
    void timeChanged();
    void printTracks();
    void printPosition();
    void printEvent(const char* event, Record more);
    [[nodiscard]] double secondsSoFar() const;

    Services& m_services;
    Output& m_output;
    std::shared_ptr<FSPlayer> m_engine;
    std::stop_source m_end;
    Date m_begin = currentDate();
    double m_lastPrinted = -1;
    bool m_hasPlayed = false;
};

} // namespace ondavia::cli
