#include "tarvikclient/gui/platform/desktopnotification.h"

#include <wx/notifmsg.h>

namespace quillon {

void showDesktopNotification(wxString const& title, wxString const& text) {
    static wxNotificationMessage message;
    message.SetTitle(title);
    message.SetMessage(text);
    message.Show();
}

} // namespace quillon
