// Notifications that the desktop shows.
#pragma once

#include <wx/string.h>

namespace quillon {

/// Shows a notification of the desktop's own, in place of the last one shown this way. Waits for nothing;
/// where the desktop has no notifications, or they do not answer, nothing is shown. Interface thread only.
void showDesktopNotification(wxString const& title, wxString const& text);

/// Takes the notification back that stands. Interface thread only.
void withdrawDesktopNotification();

} // namespace quillon
