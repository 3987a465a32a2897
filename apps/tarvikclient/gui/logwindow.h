// The window that shows the log.
#pragma once

#include <wx/string.h>

class wxWindow;

namespace quillon {

/// Opens a window with the text of a log file, or raises the one that is open with that file; one that is
/// open with another file goes. The window names the file; with an empty path it says that there is none. It
/// begins at most LogTail::longestBacklog before the end of the file, follows it from there, drops the oldest
/// lines when it holds some MiB, and waits while the user reads further up. What it saves is the whole file,
/// not only what it shows. What is copied or saved may leave the machine: privateText() says what is taken
/// out of it.
///
/// The window closes with `parent`, which may be hidden or null, and does not keep the application running. A
/// file that is missing or empty is no fault: its text is shown once it comes; a file of another user is
/// none. Interface thread only.
void showLogWindow(wxWindow* parent, wxString const& path, wxString const& gateway);

} // namespace quillon
