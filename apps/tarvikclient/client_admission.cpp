// Whether the session with the launch URL's gateway may begin.
#include "tarvikclient/client.h"

#include "base/log.h"

namespace quillon {

void TarvikClient::applyPolicy() {
    m_audit.setOutcome("refused"); // by a policy that cannot be followed
    m_policy = Policy::load();
    m_audit.setOutcome("failed");
    m_downloadManager.getSession().setPolicy(m_policy);
}

/// False when the pass is over, which has been notified: nothing has been asked of the gateway.
bool TarvikClient::mayBegin() {
    if (m_policy->rules().others == GatewayDecision::allow)
        return true;
    auto const gateway = http::HostPort::parse(getMediation(), gatewayPort);
    if (!gateway)
        return refuseGateway(FailureKind::policy, "refused", "is no name that a policy can decide on");
    switch (m_policy->decideOn(*gateway)) {
    case GatewayDecision::allow:
        return true;
    case GatewayDecision::refuse:
        return refuseGateway(FailureKind::policy, "refused", "is refused by the policy");
    case GatewayDecision::ask:
        break;
    }
    switch (askUser(*gateway)) {
    case GatewayQuestion::Answer::yes:
        return true;
    case GatewayQuestion::Answer::no:
        return refuseGateway(FailureKind::notAgreed, "denied", "was not agreed to");
    case GatewayQuestion::Answer::withdrawn:
        break;
    }
    m_audit.setOutcome("stopped");
    m_notify.onStatus(STATUS_FINISHED);
    return false;
}

bool TarvikClient::refuseGateway(FailureKind kind, char const* outcome, char const* reason) {
    log(ERROR, "TarvikClient", "main", "The gateway " + getMediation() + " " + reason);
    m_audit.setOutcome(outcome);
    m_failing.kind = kind;
    notifyFailure();
    return false;
}

GatewayQuestion::Answer TarvikClient::askUser(http::HostPort const& gateway) {
    if (!m_consent)
        return GatewayQuestion::Answer::no;
    auto const question = std::make_shared<GatewayQuestion>(gateway);
    {
        TSynchronize<Mutex> lock(m_mutex);
        m_question = question;
        // An order that came before there was a question.
        if (m_downloadManager.getSession().isCancelled())
            question->answer(GatewayQuestion::Answer::withdrawn);
    }
    m_consent->ask(question);
    auto const answer = question->await();
    TSynchronize<Mutex> lock(m_mutex);
    m_question.reset();
    return answer;
}

} // namespace quillon
