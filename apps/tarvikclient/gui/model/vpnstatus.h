// What the panel says of the tunnel's state.
#pragma once

#include <wx/string.h>

namespace quillon {

/// Turns the module's status lines into translated text. No window; one thread.
class VpnStatus {
public:
    /// Takes a status line; false when it repeats the last one, and nothing changes.
    bool accept(wxString const& line);
    /// One step of the dots; false when the state has none.
    bool advance();
    /// The text as it is to be shown, dots included.
    wxString text() const;

private:
    wxString m_statusText;
    wxString m_lastVpnStatus;
    int m_dotCount = 0;
    bool m_animating = false;
};

} // namespace quillon
