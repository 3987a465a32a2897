#include "tarvikclient/gui/clientconsent.h"

#include "base/log.h"

namespace quillon {

wxDEFINE_EVENT(EVT_GATEWAY_QUESTION, wxThreadEvent);

void TarvikClientGuiConsent::ask(std::shared_ptr<GatewayQuestion> const& question) {
    if (RememberedGateways().contains(question->gateway())) {
        log(TRACE, "TarvikClientGuiConsent", "ask", "The user has agreed to this gateway before");
        question->answer(GatewayQuestion::Answer::yes);
        return;
    }
    auto* const event = new wxThreadEvent(EVT_GATEWAY_QUESTION);
    event->SetPayload(question);
    wxQueueEvent(m_target, event);
}

void TarvikClientGuiConsent::agree(GatewayQuestion& question) {
    RememberedGateways().add(question.gateway());
    question.answer(GatewayQuestion::Answer::yes);
}

} // namespace quillon
