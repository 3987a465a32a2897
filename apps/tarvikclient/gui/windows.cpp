#include "tarvikclient/gui/windows.h"

#include <wx/artprov.h>
#include <wx/toplevel.h>

namespace quillon {

wxIconBundle programIcons() {
    if (!wxArtProvider::GetBitmap("tarvik-logo", wxART_MESSAGE_BOX).IsOk())
        return wxIconBundle();
    return wxArtProvider::GetIconBundle("tarvik-logo", wxART_OTHER);
}

void centre(wxTopLevelWindow& window) {
    if (window.GetParent() && window.GetParent()->IsShownOnScreen())
        window.CentreOnParent();
    else
        window.CentreOnScreen();
}

} // namespace quillon
