// What need not be done for each of many changes.
#pragma once

#include <wx/timer.h>

#include <functional>

namespace quillon {

/// Does something at once, and again at the most twenty times a second however often it is asked for: a
/// module may say more in a second than can be drawn. Interface thread only.
class Throttle final : private wxTimer {
public:
    explicit Throttle(std::function<void()> act) : m_act(std::move(act)) {}

    /// Has it done, now or soon.
    void request();
    /// Does now what has been asked for, if anything.
    void flush();

private:
    static constexpr int pause = 50; // milliseconds

    void Notify() override;

    std::function<void()> m_act;
    bool m_wanted = false;
};

} // namespace quillon
