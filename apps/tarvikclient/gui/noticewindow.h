// Something that a person is told beside what goes on.
#pragma once

#include <wx/string.h>

#include <functional>

class wxWindow;

namespace quillon {

/// What a notice says, and what can be done about it.
struct Notice {
    wxString heading; ///< one sentence
    wxString text;    ///< what happened, and what to do
    wxString button;  ///< of the action; empty without one
    std::function<void()> action;
};

/// Opens a window with the notice. It stops nothing: the session goes on, and so does the program's end. It
/// stands in the upper part of the screen and in the task bar, closes with `owner`, which may be hidden, and
/// keeps no application running. Interface thread only.
void showNotice(wxWindow& owner, Notice const& notice);

} // namespace quillon
