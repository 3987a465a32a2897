// The gateway's side of a host check: how often it asks again, and what it is told.
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace devgateway {

/// Counts the rounds of one host check after the other. Any thread may call; two host checks at the same time
/// share one count, which is enough for a gateway with one user.
class HostCheck {
public:
    struct Round {
        unsigned number; // from 1
        unsigned total;
        bool isLast() const { return number >= total; }
    };

    /// "continued" rounds are followed by another one; there is one more than that.
    explicit HostCheck(unsigned continued) : m_total(continued + 1) {}

    /// A new host check begins: the next round is the first.
    void restart();

    /// The round that a post belongs to. After the last one the count begins again.
    Round nextRound();

private:
    unsigned const m_total;
    std::mutex m_mutex;
    unsigned m_done = 0; // guarded by m_mutex
};

/// The rules in the body of a post, "rulesChecked=" and percent-encoded text; nothing for any other body.
std::optional<std::string> checkedRules(std::string_view body);

/// "round 1 of 3"
std::string describe(HostCheck::Round const& round);

} // namespace devgateway
