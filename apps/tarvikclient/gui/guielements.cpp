#include "tarvikclient/gui/guielements.h"

#include "tarvikclient/gui/artprovider.h"
#include "tarvikclient/gui/dialoglayout.h"

#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/image.h>
#include <wx/intl.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <algorithm>

namespace quillon {

namespace {

wxStaticText* addText(wxWindow* parent, wxSizer* sizer, wxString const& text, int flags, int border) {
    auto* const control = new wxStaticText(parent, wxID_ANY, text);
    sizer->Add(control, 0, flags, border);
    return control;
}

} // namespace

ConnectionErrorDialog::ConnectionErrorDialog(wxWindow* parent, wxString const& title)
    : wxDialog(parent, wxID_ANY, title, wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE) {
    SetIcons(programIcons());
    Distances const space(*this);
    auto* const rows = new wxBoxSizer(wxVERTICAL);

    auto* const top = new wxBoxSizer(wxHORIZONTAL);
    top->Add(new wxStaticBitmap(this, wxID_ANY, wxArtProvider::GetBitmap(wxART_WARNING, wxART_CMN_DIALOG)), 0,
             wxRIGHT, space.margin);
    auto* const texts = new wxBoxSizer(wxVERTICAL);
    // TRANSLATORS: {gateway} is the name of the gateway's host.
    errorHeading = addText(this, texts, _("CONNECTION_ERROR"), 0, 0);
    errorHeading->SetFont(errorHeading->GetFont().Bold());
    errorHappened = addText(this, texts, wxString(), wxTOP, space.gap);
    errorToDo = addText(this, texts, wxString(), wxTOP, space.gap);
    top->Add(texts, 1);
    rows->Add(top, 0, wxEXPAND | wxALL, space.margin);

    // Right before its field: the toolkit takes it for the field's label.
    addText(this, rows, _("Details:"), wxLEFT | wxRIGHT, space.margin);
    errorDetails = new wxTextCtrl(this, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                                  wxTE_MULTILINE | wxTE_READONLY | wxTE_BESTWRAP);
    rows->AddSpacer(space.gap / 2);
    rows->Add(errorDetails, 1, wxEXPAND | wxLEFT | wxRIGHT, space.margin);

    auto* const buttons = new wxBoxSizer(wxHORIZONTAL);
    buttons->Add(new wxButton(this, settingsButtonId, _("Settings")), 0, wxRIGHT, space.gap);
    // TRANSLATORS: a button, which shows the log.
    buttons->Add(new wxButton(this, logButtonId, _("Log")));
    buttons->AddSpacer(3 * space.margin);
    buttons->AddStretchSpacer();
    auto* const retry = new wxButton(this, wxID_ANY, _("Retry"));
    buttons->Add(retry, 0, wxRIGHT, space.gap);
    auto* const quit = new wxButton(this, wxID_EXIT, _("Quit"));
    buttons->Add(quit);
    rows->Add(buttons, 0, wxEXPAND | wxALL, space.margin);
    retry->SetDefault();
    retry->SetFocus();
    SetSizerAndFit(rows);

    Bind(wxEVT_CLOSE_WINDOW, &ConnectionErrorDialog::OnQuit, this);
    Bind(wxEVT_INIT_DIALOG, &ConnectionErrorDialog::onInit, this);
    retry->Bind(wxEVT_BUTTON, &ConnectionErrorDialog::onRetry, this);
    quit->Bind(wxEVT_BUTTON, &ConnectionErrorDialog::onQuit, this);
}

// Skipped, so that closing from the title bar still ends the modal dialog.
void ConnectionErrorDialog::OnQuit(wxCloseEvent& event) {
    event.Skip();
}

void ConnectionErrorDialog::onInit(wxInitDialogEvent& event) {
    event.Skip();
}

void ConnectionErrorDialog::onRetry(wxCommandEvent&) {}
void ConnectionErrorDialog::onQuit(wxCommandEvent&) {}

AboutDialog::AboutDialog(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, _("TarvikClient"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE) {
    SetIcons(programIcons());
    Distances const space(*this);
    auto* const rows = new wxBoxSizer(wxVERTICAL);
    rows->Add(new wxStaticBitmap(this, wxID_ANY, wxArtProvider::GetBitmap("tarvik-logo", wxART_MESSAGE_BOX)),
              0, wxALIGN_CENTER);
    auto* const name = addText(this, rows, _("TarvikClient"), wxALIGN_CENTER | wxTOP, space.margin);
    name->SetFont(wxFont(23, wxFONTFAMILY_DEFAULT, wxFONTSTYLE_NORMAL, wxFONTWEIGHT_NORMAL));
    version = addText(this, rows, _("0.0.0.0"), wxALIGN_CENTER | wxTOP, space.gap / 2);
    auto* const line = new wxStaticText(this, wxID_ANY, _("ABOUT_LINE"), wxDefaultPosition, wxDefaultSize,
                                        wxALIGN_CENTRE_HORIZONTAL);
    rows->Add(line, 0, wxALIGN_CENTER | wxTOP, 2 * space.margin);
    line->Wrap(48 * GetCharWidth());
    auto* const close = new wxButton(this, wxID_CLOSE);
    rows->Add(close, 0, wxALIGN_CENTER | wxTOP, 2 * space.margin);
    close->SetDefault();
    close->SetFocus();
    SetEscapeId(wxID_CLOSE);
    auto* const outer = new wxBoxSizer(wxVERTICAL);
    outer->Add(rows, 1, wxEXPAND | wxALL, 2 * space.margin);
    SetSizerAndFit(outer);
    close->Bind(wxEVT_BUTTON, &AboutDialog::onClose, this);
}

void AboutDialog::onClose(wxCommandEvent&) {}

namespace {

constexpr int pictureSide = 32;
constexpr int pictureBorder = 5;

/// The provider has no picture of this name for a panel; the program's own icon is that.
wxBitmap panelLogo(wxWindow const& panel) {
    int const scale = panel.GetContentScaleFactor() > 1 ? 2 : 1;
    wxIcon const icon = programIcons().GetIcon(scale * pictureSide, wxIconBundle::FALLBACK_NEAREST_LARGER);
    if (!icon.IsOk())
        return wxNullBitmap;
    wxBitmap bitmap;
    bitmap.CopyFromIcon(icon);
    wxImage image = bitmap.ConvertToImage();
    image.Rescale(scale * pictureSide, scale * pictureSide, wxIMAGE_QUALITY_HIGH);
    return wxBitmap(image, wxBITMAP_SCREEN_DEPTH, scale);
}

wxStaticText* addRow(wxWindow* panel, wxSizer* rows, wxBitmap const& picture, wxString const& text,
                     int flags) {
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    auto* const bitmap = new wxStaticBitmap(panel, wxID_ANY, picture);
    bitmap->SetMinSize(wxSize(pictureSide, pictureSide)); // also where the picture is missing
    row->Add(bitmap, 0, wxALL | wxALIGN_CENTER_VERTICAL, pictureBorder);
    auto* const label = new wxStaticText(panel, wxID_ANY, text, wxDefaultPosition, wxDefaultSize,
                                         wxST_ELLIPSIZE_END | wxST_NO_AUTORESIZE);
    label->Wrap(-1);
    // The border that puts a line of text at the height of the picture's middle.
    int const height = label->GetBestSize().GetHeight();
    row->Add(label, 1, wxALL | flags, std::max(pictureBorder, pictureBorder + (pictureSide - height) / 2));
    rows->Add(row, 0, wxEXPAND);
    return label;
}

} // namespace

NotificationPanel::NotificationPanel(wxWindow* parent)
    : wxFrame(parent, wxID_ANY, wxString(), wxDefaultPosition, wxSize(341, 129),
              wxBORDER_SIMPLE | wxSTAY_ON_TOP | wxFRAME_SHAPED | wxFRAME_NO_TASKBAR) {
    SetSizeHints(wxSize(341, 129));
    auto* const rows = new wxBoxSizer(wxVERTICAL);
    addRow(this, rows, panelLogo(*this), _("TarvikClient"), wxALIGN_CENTER_VERTICAL);
    addRow(this, rows, wxArtProvider::GetBitmap("tarvik-plugin", wxART_OTHER), _("Connected"), 0);
    statusLabel = addRow(this, rows, wxArtProvider::GetBitmap("tarvik-vpn", wxART_OTHER), wxString(), 0);
    SetSizer(rows);
    Layout();
}

} // namespace quillon
