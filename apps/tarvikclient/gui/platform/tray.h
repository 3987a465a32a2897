// The system tray, and what the desktop says of an icon in it.
#pragma once

class wxTaskBarIcon;

namespace quillon {

/// Whether the icon counts as a status item, whose menu has to offer the way to stop. A dock icon, which
/// brings that entry itself, does not. Interface thread only.
bool isStatusItem(wxTaskBarIcon& icon);

/// Makes the tray's left click reach the icon as wxEVT_TASKBAR_LEFT_UP where it is reported as another event.
/// Interface thread only.
void bindTrayClick(wxTaskBarIcon& icon);

/// Whether the desktop has a tray at this moment. Asks the display, which takes one short round trip.
/// Interface thread only.
bool isTrayAvailable();

/// Milliseconds after which isTrayAvailable() is worth asking again; 0 where the answer never changes.
int trayPollPeriod();

} // namespace quillon
