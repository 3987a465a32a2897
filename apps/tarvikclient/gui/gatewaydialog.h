// The window that asks before the first session with a gateway.
#pragma once

#include "http/hostport.h"

#include <wx/dialog.h>

class wxStaticText;

namespace quillon {

class ScrolledContents;

/// Names the gateway in full and in ASCII, and asks. ShowModal() returns wxID_YES for the button "Yes", and
/// anything else for all other ways to end it. Interface thread only.
class TarvikClientGatewayDialog : public wxDialog {
public:
    TarvikClientGatewayDialog(wxWindow* parent, http::HostPort const& gateway);

private:
    void addText(wxSizer& rows, wxString const& text, bool bold);

    ScrolledContents* m_contents;
};

} // namespace quillon
