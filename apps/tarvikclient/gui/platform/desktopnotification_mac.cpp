#include "tarvikclient/gui/platform/desktopnotification.h"

#include <wx/notifmsg.h>

namespace quillon {

namespace {

wxNotificationMessage& notification() {
    static wxNotificationMessage message;
    return message;
}

} // namespace

void showDesktopNotification(wxString const& title, wxString const& text) {
    wxNotificationMessage& message = notification();
    message.SetTitle(title);
    message.SetMessage(text);
    message.Show();
}

void withdrawDesktopNotification() {
    notification().Close();
}

} // namespace quillon
