#include "tarvikclient/gui/dialoglayout.h"

#include <wx/toplevel.h>

namespace quillon {

Distances::Distances(wxWindow const& window) : margin(window.FromDIP(12)), gap(window.FromDIP(8)) {}

void centre(wxTopLevelWindow& window) {
    if (window.GetParent() && window.GetParent()->IsShownOnScreen())
        window.CentreOnParent();
    else
        window.CentreOnScreen();
}

} // namespace quillon
