#include "tarvikclient/gui/debug.h"

#include "tarvikclient/gui/dialoglayout.h"

#include <wx/dialog.h>
#include <wx/sizer.h>
#include <wx/textctrl.h>
#include <wx/utils.h>

namespace quillon::debug {

wxString describeParameters(int argc, char** argv) {
    wxString text = wxString::Format("PID: %ld\n\nARGS:\n", static_cast<long>(wxGetProcessId()));
    for (int i = 0; i < argc; ++i)
        text += wxString::Format("%d: ", i) + wxString(argv[i]) + "\n";
    return text;
}

void showParameters(int argc, char** argv) {
    wxDialog dialog(nullptr, wxID_ANY, "DEBUG", wxDefaultPosition, wxDefaultSize,
                    wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER);
    Distances const space(dialog);
    auto* const sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(new wxTextCtrl(&dialog, wxID_ANY, describeParameters(argc, argv), wxDefaultPosition,
                              dialog.FromDIP(wxSize(480, 240)), wxTE_MULTILINE | wxTE_READONLY),
               1, wxEXPAND | wxALL, space.margin);
    sizer->Add(dialog.CreateStdDialogButtonSizer(wxOK), 0, wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM,
               space.margin);
    dialog.SetSizerAndFit(sizer);
    dialog.ShowModal();
}

} // namespace quillon::debug
