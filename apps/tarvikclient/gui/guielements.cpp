#include "tarvikclient/gui/guielements.h"

#include "tarvikclient/gui/artprovider.h"
#include "tarvikclient/gui/dialoglayout.h"
#include "tarvikclient/gui/platform/accessibility.h"

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
    wxStaticText* const label = addText(this, rows, _("Details:"), wxLEFT | wxRIGHT, space.margin);
    errorDetails = new wxTextCtrl(this, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                                  wxTE_MULTILINE | wxTE_READONLY | wxTE_BESTWRAP);
    setLabelOf(*errorDetails, *label);
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

/// A button that is hidden until there is something for it to do.
wxButton* makeSmallButton(wxWindow* panel, wxString const& label) {
    auto* const button =
        new wxButton(panel, wxID_ANY, label, wxDefaultPosition, wxDefaultSize, wxBU_EXACTFIT);
    button->SetMinSize(button->GetBestSize() + wxSize(2 * button->GetCharWidth(), 0));
    button->Hide();
    return button;
}

wxStaticText* addRow(wxWindow* panel, wxSizer* rows, wxStaticBitmap* picture, wxString const& text,
                     wxButton* button = nullptr) {
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    picture->SetMinSize(wxSize(pictureSide, pictureSide)); // also where it is missing
    row->Add(picture, 0, wxALL | wxALIGN_CENTER_VERTICAL, pictureBorder);
    auto* const label = new wxStaticText(panel, wxID_ANY, text, wxDefaultPosition, wxDefaultSize,
                                         wxST_ELLIPSIZE_END | wxST_NO_AUTORESIZE);
    label->Wrap(-1);
    row->Add(label, 1, wxALL | wxALIGN_CENTER_VERTICAL, pictureBorder);
    if (button)
        row->Add(button, 0, wxRIGHT | wxALIGN_CENTER_VERTICAL | wxRESERVE_SPACE_EVEN_IF_HIDDEN,
                 pictureBorder);
    rows->Add(row, 1, wxEXPAND);
    return label;
}

} // namespace

NotificationPanel::NotificationPanel(wxWindow* parent)
    : wxFrame(parent, wxID_ANY, wxString(), wxDefaultPosition, wxSize(341, 129),
              wxBORDER_SIMPLE | wxSTAY_ON_TOP | wxFRAME_SHAPED | wxFRAME_NO_TASKBAR) {
    SetSizeHints(wxSize(341, 129));
    auto const makePicture = [this](wxBitmap const& picture) {
        return new wxStaticBitmap(this, wxID_ANY, picture);
    };
    auto const pictureOf = [](char const* id) { return wxArtProvider::GetBitmap(id, wxART_OTHER); };
    // TRANSLATORS: a button that opens the program's menu.
    menuButton = makeSmallButton(this, _("PANEL_MENU"));
    // TRANSLATORS: a button beside the address that the tunnel gave this machine: copies the address.
    addressButton = makeSmallButton(this, _("PANEL_COPY_ADDRESS"));
    auto* const rows = new wxBoxSizer(wxVERTICAL);
    addRow(this, rows, makePicture(panelLogo(*this)), _("TarvikClient"), menuButton);
    stateLabel = addRow(this, rows, makePicture(pictureOf("tarvik-plugin")), _("Connected"));
    statusPicture = makePicture(pictureOf("tarvik-vpn"));
    statusLabel = addRow(this, rows, statusPicture, wxString(), addressButton);
    SetSizer(rows);
    Layout();
    setAccessibleName(*this, _("TarvikClient")); // it has no title
}

} // namespace quillon
