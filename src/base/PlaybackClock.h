#pragma once

#include <algorithm>
#include <chrono>

namespace ondavia {

/// A position between two reports of it: whoever plays is asked only when somebody wants to know, not for
/// every picture. Where no report comes any more, the position stands after a while: so may what plays.
/// It never goes back by itself: where what plays stood still unseen, the position had run ahead, and waits
/// to be caught up with. Seconds. One thread.
class PlaybackClock final {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// What a position may be ahead of its last report.
    static constexpr std::chrono::seconds longestGuess{2};
    /// What a report may lie behind without anything having happened. Further back is a jump.
    static constexpr double slack = 1;

    void report(double position, Time now) {
        const double told = this->position(now);
        const bool ranAhead = position < told && told - position <= slack;
        m_floor = ranAhead && !m_mayJump ? told : position;
        m_mayJump = false;
        m_position = position;
        m_since = now;
    }
    /// The next report counts as it is: something was sought.
    void expectJump() { m_mayJump = true; }
    /// From now on the position moves by `rate` seconds a second; 0 stands still.
    void run(double rate, Time now) {
        m_position = reached(now);
        m_since = now;
        m_rate = rate;
    }
    [[nodiscard]] double position(Time now) const { return std::max(m_floor, reached(now)); }
    [[nodiscard]] double rate() const { return m_rate; }

private:
    [[nodiscard]] double reached(Time now) const {
        const std::chrono::duration<double> since = std::min<Time::duration>(now - m_since, longestGuess);
        return m_position + m_rate * since.count();
    }

    double m_position = 0;
    /// What was told already.
    double m_floor = 0;
    double m_rate = 0;
    bool m_mayJump = false;
    Time m_since;
};

} // namespace ondavia
