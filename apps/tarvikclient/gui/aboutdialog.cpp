#include "tarvikclient/gui/aboutdialog.h"

#include "base/console.h"
#include "tarvikclient/client.h"
#include "tarvikclient/gui/dialoglayout.h"
#include "tarvikclient/gui/model/wxconversion.h"
#include "tarvikclient/gui/platform/librarylicences.h"

#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace quillon {

namespace {

constexpr char libraryLicences[] = "wxWidgets: wxWindows Library Licence 3.1\n"
                                   "libcurl: curl License\n"
                                   "OpenSSL: Apache License 2.0\n"
                                   "jsoncpp: MIT License or public domain\n"
                                   "libarchive: BSD 2-Clause License\n";

} // namespace

TarvikClientAboutDialog::TarvikClientAboutDialog(wxWindow* parent) : AboutDialog(parent) {
    version->SetLabel(TarvikClient::version);
    logPlace->ChangeValue(quillonToWxString(console->getFilename(TRACE)));
    licences->ChangeValue(wxString(libraryLicences) + platformLibraryLicences());
    contents->fitWindow();
    centre(*this);
}

void TarvikClientAboutDialog::onClose(wxCommandEvent&) {
    // Not Close(), which asks for a click on this very button.
    EndDialog(wxID_CLOSE);
}

} // namespace quillon
