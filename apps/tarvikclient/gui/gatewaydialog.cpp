#include "tarvikclient/gui/gatewaydialog.h"

#include "tarvikclient/gui/artprovider.h"
#include "tarvikclient/gui/dialoglayout.h"
#include "tarvikclient/gui/model/wxconversion.h"
#include "tarvikclient/policyrules.h"

#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/intl.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

namespace quillon {

namespace {

constexpr int widthInCharacters = 56;
constexpr std::size_t longestPiece = 44;

/// The whole name in pieces that fit: it is the end of a long one that says whose it is.
wxString inPieces(wxString const& name) {
    wxString pieces;
    for (std::size_t from = 0; from < name.length(); from += longestPiece)
        pieces += (from == 0 ? "" : "\n") + name.Mid(from, longestPiece);
    return pieces;
}

wxString withName(wxString text, wxString const& name) {
    text.Replace("{gateway}", inPieces(name));
    return text;
}

} // namespace

TarvikClientGatewayDialog::TarvikClientGatewayDialog(wxWindow* parent, http::HostPort const& gateway)
    : wxDialog(parent, wxID_ANY, _("TarvikClient"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE) {
    SetIcons(programIcons());
    Distances const space(*this);
    m_contents = new ScrolledContents(this);
    auto* const texts = new wxBoxSizer(wxVERTICAL);
    // TRANSLATORS: {gateway} is the name of the gateway's host.
    addText(*texts, withName(_("GATEWAY_QUESTION"), quillonToWxString(gateway.toString(gatewayPort))), true);
    wxString const international = quillonToWxString(gateway.internationalName());
    if (!international.empty())
        // TRANSLATORS: {gateway} is the host's name in its own letters; the question has it in ASCII.
        addText(*texts, withName(_("GATEWAY_INTERNATIONAL_NAME"), international), false);
    addText(*texts, _("GATEWAY_QUESTION_DETAILS"), false);

    auto* const question = new wxBoxSizer(wxHORIZONTAL);
    question->Add(
        new wxStaticBitmap(m_contents, wxID_ANY, wxArtProvider::GetBitmap(wxART_QUESTION, wxART_CMN_DIALOG)),
        0, wxRIGHT, space.margin);
    question->Add(texts, 1);
    auto* const buttons = new wxBoxSizer(wxHORIZONTAL);
    buttons->AddStretchSpacer();
    buttons->Add(new wxButton(this, wxID_YES), 0, wxRIGHT, space.gap);
    auto* const no = new wxButton(this, wxID_NO);
    buttons->Add(no);
    auto* const rows = new wxBoxSizer(wxVERTICAL);
    auto* const inner = new wxBoxSizer(wxVERTICAL);
    inner->Add(question, 1, wxEXPAND | wxLEFT | wxRIGHT | wxTOP, space.margin);
    m_contents->SetSizer(inner);
    rows->Add(m_contents, 1, wxEXPAND);
    rows->Add(buttons, 0, wxEXPAND | wxALL, space.margin);
    no->SetDefault();
    no->SetFocus();
    SetAffirmativeId(wxID_YES);
    SetEscapeId(wxID_NO);
    SetSizer(rows);
    m_contents->fitWindow();
    centre(*this);
}

void TarvikClientGatewayDialog::addText(wxSizer& rows, wxString const& text, bool bold) {
    auto* const control = new wxStaticText(m_contents, wxID_ANY, wxString());
    if (bold)
        control->SetFont(control->GetFont().Bold());
    control->SetLabelText(text);
    control->Wrap(widthInCharacters * GetCharWidth());
    rows.Add(control, 0, wxBOTTOM, Distances(*this).gap);
}

} // namespace quillon
