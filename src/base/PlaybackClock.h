#pragma once

#include <algorithm>
#include <chrono>

namespace ondavia {

/// A position between two reports of it: whoever plays is asked only when somebody wants to know, not for
/// every picture. Where no report comes any more, the position stands after a while: so may what plays.
/// Seconds. One thread.
class PlaybackClock final {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// What a position may be ahead of its last report.
    static constexpr std::chrono::seconds longestGuess{2};

    void report(double position, Time now) {
        m_position = position;
        m_since = now;
    }
    /// From now on the position moves by `rate` seconds a second; 0 stands still.
    void run(double rate, Time now) {
        report(position(now), now);
        m_rate = rate;
    }
    [[nodiscard]] double position(Time now) const {
        const std::chrono::duration<double> since = std::min<Time::duration>(now - m_since, longestGuess);
        return m_position + m_rate * since.count();
    }
    [[nodiscard]] double rate() const { return m_rate; }

private:
    double m_position = 0;
    double m_rate = 0;
    Time m_since;
};

} // namespace ondavia
