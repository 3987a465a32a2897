#include "tarvikclient/gui/desktop.h"

#include <wx/notifmsg.h>

namespace quillon {

bool windowsCanBePlaced() {
    return true;
}

void showDesktopNotification(wxString const& title, wxString const& text) {
    static wxNotificationMessage message;
    message.SetTitle(title);
    message.SetMessage(text);
    message.Show();
}

void prepareEnvironment() {}

void restoreEnvironment() {}

// The windows are the process's own here.
void watchDisplay(std::function<void()>) {}

void showMenuPictures() {}

} // namespace quillon
