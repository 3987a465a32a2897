#include "tarvikclient/gui/clientwxevent.h"

#include "curl/requestinfo.h"
#include "tarvikclient/gui/model/wxconversion.h"

namespace quillon {

wxDEFINE_EVENT(EVT_TYPE_CLIENTNOTIFY, wxThreadEvent);

void TarvikClientGuiNotifyHandler::queue(ClientNotifyId id, wxString const& text, int number) {
    auto* const event = new wxThreadEvent(EVT_TYPE_CLIENTNOTIFY, id);
    event->SetString(text);
    event->SetInt(number);
    wxQueueEvent(m_target, event);
}

void TarvikClientGuiNotifyHandler::onConnectError(RequestInfo const& information) {
    queue(CLIENTNOTIFY_CONNECT_ERROR, quillonToWxString(information.format()), 0);
}

void TarvikClientGuiNotifyHandler::onFatalError(String const& text) {
    queue(CLIENTNOTIFY_FATAL_ERROR, quillonToWxString(text), 0);
}

void TarvikClientGuiNotifyHandler::onStatus(ClientStatus const& status) {
    queue(CLIENTNOTIFY_STATUS, wxString(), status);
}

void TarvikClientGuiNotifyHandler::onVpnStatus(String const& status) {
    queue(CLIENTNOTIFY_VPN_STATUS, quillonToWxString(status), 0);
}

void TarvikClientGuiNotifyHandler::onDispatch(ClientType type) {
    queue(CLIENTNOTIFY_DISPATCH, wxString(), type);
}

} // namespace quillon
