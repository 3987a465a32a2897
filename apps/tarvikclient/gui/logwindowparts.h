// The controls of the window that shows the log.
#pragma once

#include <wx/string.h>

class wxStaticText;
class wxTextCtrl;
class wxWindow;

namespace quillon {

// Children of `parent`, which owns them. Interface thread only.

/// The log's text, in letters of one width. Screen readers call it by `name`.
wxTextCtrl* makeLogText(wxWindow* parent, wxString const& name);
/// What stands there in the place of a text, in lines of `width` pixels: that the file at `path` is empty, or
/// that there is none where the path is.
wxStaticText* makeLogHint(wxWindow* parent, wxString const& path, int width);
/// Which file is shown; it does not widen its window, and is hidden without a path.
wxStaticText* makeLogPlace(wxWindow* parent, wxString const& path);

} // namespace quillon
