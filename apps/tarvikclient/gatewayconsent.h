// Whether a user wants a session with a gateway that nobody has allowed.
#pragma once

#include "base/condition.h"
#include "http/hostport.h"

#include <memory>
#include <optional>

namespace quillon {

/// One question, from being asked to its answer. The client thread waits for it; whoever can answer does so
/// on any thread. It is shared, because it may be answered after nobody waits any more.
class GatewayQuestion {
public:
    enum class Answer {
        no,
        yes,
        withdrawn ///< the session was ended while the question was open
    };

    explicit GatewayQuestion(http::HostPort const& gateway) : m_gateway(gateway) {}

    http::HostPort const& gateway() const noexcept { return m_gateway; }
    /// The first answer counts.
    void answer(Answer answer);
    /// Waits for the answer, however long that takes.
    Answer await();
    bool isOpen() const;

private:
    http::HostPort const m_gateway;
    mutable Mutex m_mutex;
    Condition m_answered;
    std::optional<Answer> m_answer;
};

/// Puts questions to the user. It must outlive the client's thread.
class IGatewayConsent {
public:
    /// Called on the client thread. Sees to it that the question is answered, and returns soon. A question
    /// that is not open any more needs no answer.
    virtual void ask(std::shared_ptr<GatewayQuestion> const& question) = 0;

protected:
    ~IGatewayConsent() = default;
};

} // namespace quillon
