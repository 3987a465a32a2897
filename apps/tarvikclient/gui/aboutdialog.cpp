#include "tarvikclient/gui/aboutdialog.h"

#include "tarvikclient/client.h"
#include "tarvikclient/gui/dialoglayout.h"

#include <wx/sizer.h>
#include <wx/stattext.h>

namespace quillon {

TarvikClientAboutDialog::TarvikClientAboutDialog(wxWindow* parent) : AboutDialog(parent) {
    version->SetLabel(TarvikClient::version);
    GetSizer()->SetSizeHints(this);
    centre(*this);
}

void TarvikClientAboutDialog::onClose(wxCommandEvent&) {
    // Not Close(), which asks for a click on this very button.
    EndDialog(wxID_CLOSE);
}

} // namespace quillon
