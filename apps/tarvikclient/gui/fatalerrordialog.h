// The dialog that says why the session, or the program, is over.
#pragma once

#include <wx/dialog.h>

#include <vector>

namespace quillon {

/// A window of its own on the task bar, in the middle of the screen: it may be all that is left of the
/// program to be seen. Its one button returns wxID_OK, as does closing it. Interface thread only.
class TarvikClientFatalErrorDialog : public wxDialog {
public:
    /// `heading` says that there was an error, each of `paragraphs` more about it. Of any length, and shown
    /// as they stand.
    TarvikClientFatalErrorDialog(wxString const& heading, std::vector<wxString> const& paragraphs,
                                 wxString const& buttonLabel);

    wxString const& heading() const { return m_heading; }

private:
    wxSizer* makeTexts(std::vector<wxString> const& paragraphs);

    wxString const m_heading;
};

} // namespace quillon
