// Brings the client's questions about gateways to the interface's thread.
#pragma once

#include "tarvikclient/gatewayconsent.h"
#include "tarvikclient/rememberedgateways.h"

#include <wx/event.h>

namespace quillon {

/// The payload is a std::shared_ptr<GatewayQuestion>.
wxDECLARE_EVENT(EVT_GATEWAY_QUESTION, wxThreadEvent);

/// Answers for the gateways that the user has agreed to before, and queues an event for the others. The
/// handler must outlive the client's thread.
class TarvikClientGuiConsent final : public IGatewayConsent {
public:
    explicit TarvikClientGuiConsent(wxEvtHandler* target) : m_target(target) {}
    virtual ~TarvikClientGuiConsent() = default;

    void ask(std::shared_ptr<GatewayQuestion> const& question) override;
    /// Agrees, now and from now on. Interface thread.
    static void agree(GatewayQuestion& question);

private:
    wxEvtHandler* m_target;
};

} // namespace quillon
