// From the client's thread to the interface's.
#pragma once

#include "tarvikclient/clientnotify.h"

#include <wx/event.h>

namespace quillon {

/// The one event type that all notifications travel as, told apart by these ids.
wxDECLARE_EVENT(EVT_TYPE_CLIENTNOTIFY, wxThreadEvent);

enum ClientNotifyId {
    CLIENTNOTIFY_CONNECT_ERROR = 1, ///< string: what RequestInfo::format() says of the failed request
    CLIENTNOTIFY_STATUS = 2,        ///< integer: ClientStatus
    CLIENTNOTIFY_VPN_STATUS = 3,    ///< string: the status line as the module reported it
    CLIENTNOTIFY_FATAL_ERROR = 4,   ///< string: the client's text
    CLIENTNOTIFY_DISPATCH = 5       ///< integer: ClientType
};

/// Queues one event per notification on a handler of the interface's thread, and never waits for it. The
/// operations are called on the client thread; the handler must outlive that thread.
class TarvikClientGuiNotifyHandler final : public ITarvikClientNotify {
public:
    explicit TarvikClientGuiNotifyHandler(wxEvtHandler* target) : m_target(target) {}
    virtual ~TarvikClientGuiNotifyHandler() = default;

    void onConnectError(RequestInfo const& information) override;
    void onFatalError(String const& text) override;
    void onStatus(ClientStatus const& status) override;
    void onVpnStatus(String const& status) override;
    void onDispatch(ClientType type) override;

private:
    void queue(ClientNotifyId id, wxString const& text, int number);

    wxEvtHandler* m_target;
};

} // namespace quillon
