#include "tarvikclient/gui/guielements.h"

#include "tarvikclient/gui/artprovider.h"
#include "tarvikclient/gui/dialoglayout.h"
#include "tarvikclient/gui/platform/accessibility.h"

#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/image.h>
#include <wx/intl.h>
#include <wx/scrolwin.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

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

    auto* const heading = new wxBoxSizer(wxHORIZONTAL);
    heading->Add(
        new wxStaticBitmap(this, wxID_ANY, wxArtProvider::GetBitmap(wxART_WARNING, wxART_CMN_DIALOG)), 0,
        wxALIGN_CENTER_VERTICAL | wxRIGHT, space.margin);
    // TRANSLATORS: {gateway} is the name of the gateway's host.
    errorHeading = addText(this, heading, _("CONNECTION_ERROR"), wxALIGN_CENTER_VERTICAL, 0);
    errorHeading->SetFont(errorHeading->GetFont().Bold());
    rows->Add(heading, 0, wxEXPAND | wxALL, space.margin);

    addText(this, rows, _("Details:"), wxLEFT | wxRIGHT, space.margin);
    rows->AddSpacer(space.gap / 2);
    detailsArea = new wxScrolledWindow(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_SIMPLE);
    auto* const details = new wxBoxSizer(wxVERTICAL);
    errorDetails = addText(detailsArea, details, wxString(), wxALL, space.gap);
    setAccessibleName(*detailsArea, _("Details:"));
    detailsArea->SetSizer(details);
    rows->Add(detailsArea, 1, wxEXPAND | wxLEFT | wxRIGHT, space.margin);

    auto* const buttons = new wxBoxSizer(wxHORIZONTAL);
    buttons->Add(new wxButton(this, settingsButtonId, _("Settings")));
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
    setAccessibleName(*this, _("TarvikClient")); // it has no title
}

} // namespace quillon
