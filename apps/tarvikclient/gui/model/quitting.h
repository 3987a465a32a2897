// How long a session that is to end is given.
#pragma once

#include <chrono>

namespace quillon {

/// The steps by which a session is ended, each when the one before has not helped in time: it has been asked,
/// its transfer is cut off, the program ends without it. Knows no clock and no window; one thread.
class Quitting {
public:
    using Time = std::chrono::steady_clock::time_point;

    enum class Step {
        wait,   ///< the session still has time
        cancel, ///< cut off its transfers
        abandon ///< end the program although the session has not ended
    };

    /// For a module to log out in order, with the gateway's help.
    static constexpr std::chrono::seconds grace{3};
    /// From the cut on.
    static constexpr std::chrono::seconds patience{10};

    /// The session has been asked to end. One that is not `atWork` yet has nothing to put in order and is cut
    /// off at once. Only the first call counts.
    void begin(Time now, bool atWork);
    bool begun() const { return m_stage != Stage::running; }
    /// Whether the session has had the time that one needs which answers.
    bool isOverdue(Time now) const { return begun() && now >= m_begin + grace; }
    /// What is to be done now; each step but waiting is named once.
    Step advance(Time now);

private:
    enum class Stage { running, asked, cut, abandoned };

    Stage m_stage = Stage::running;
    Time m_begin{};
    Time m_due{};
};

} // namespace quillon
