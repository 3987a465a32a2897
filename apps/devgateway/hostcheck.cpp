#include "devgateway/hostcheck.h"

#include "devgateway/text.h"

namespace devgateway {

void HostCheck::restart() {
    std::lock_guard const lock(m_mutex);
    m_done = 0;
}

HostCheck::Round HostCheck::nextRound() {
    std::lock_guard const lock(m_mutex);
    Round const round{m_done + 1, m_total};
    m_done = round.isLast() ? 0 : m_done + 1;
    return round;
}

std::optional<std::string> checkedRules(std::string_view body) {
    constexpr std::string_view name = "rulesChecked=";
    if (!body.starts_with(name))
        return std::nullopt;
    return percentDecoded(body.substr(name.size()));
}

std::string describe(HostCheck::Round const& round) {
    return "round " + std::to_string(round.number) + " of " + std::to_string(round.total);
}

} // namespace devgateway
