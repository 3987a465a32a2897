// A moment to wait until, on a clock that nobody can set.
#pragma once

#include <algorithm>
#include <chrono>
#include <limits>

namespace quillon {

/// A moment some time after the object was made. A value.
class Deadline {
public:
    explicit Deadline(std::chrono::milliseconds from) : m_moment(std::chrono::steady_clock::now() + from) {}

    /// Milliseconds still to come, rounded up, so that who waits for so long does not wake before the moment;
    /// 0 once it has passed.
    unsigned left() const {
        using namespace std::chrono;
        auto const rest = ceil<milliseconds>(m_moment - steady_clock::now()).count();
        return static_cast<unsigned>(std::clamp<long long>(rest, 0, std::numeric_limits<unsigned>::max()));
    }
    bool hasPassed() const { return left() == 0; }

private:
    std::chrono::steady_clock::time_point m_moment;
};

} // namespace quillon
