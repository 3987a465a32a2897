#include "tarvikclient/gui/fatalerrordialog.h"

#include "tarvikclient/gui/artprovider.h"
#include "tarvikclient/gui/dialoglayout.h"
#include "tarvikclient/gui/wrappedtext.h"

#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/intl.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

namespace quillon {

namespace {

constexpr int widthInCharacters = 58;

} // namespace

TarvikClientFatalErrorDialog::TarvikClientFatalErrorDialog(wxString const& heading,
                                                           std::vector<wxString> const& paragraphs,
                                                           wxString const& buttonLabel)
    // TRANSLATORS: title of a message.
    : wxDialog(nullptr, wxID_ANY, _("Error"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxDIALOG_NO_PARENT),
      m_heading(heading) {
    SetIcons(programIcons());
    Distances const space(*this);
    // Before the texts: the toolkit takes a text for the label of what is made after it.
    auto* const button = new wxButton(this, wxID_OK, buttonLabel);
    auto* const top = new wxBoxSizer(wxHORIZONTAL);
    top->Add(new wxStaticBitmap(this, wxID_ANY, wxArtProvider::GetBitmap(wxART_ERROR, wxART_CMN_DIALOG)), 0,
             wxRIGHT, space.margin);
    top->Add(makeTexts(paragraphs), 1);
    auto* const rows = new wxBoxSizer(wxVERTICAL);
    rows->Add(top, 1, wxEXPAND | wxALL, space.margin);
    rows->Add(button, 0, wxALIGN_RIGHT | wxLEFT | wxRIGHT | wxBOTTOM, space.margin);
    button->SetDefault();
    button->SetFocus();
    SetAffirmativeId(wxID_OK);
    SetEscapeId(wxID_OK);
    SetSizerAndFit(rows);
    CentreOnScreen();
}

wxSizer* TarvikClientFatalErrorDialog::makeTexts(std::vector<wxString> const& paragraphs) {
    auto* const texts = new wxBoxSizer(wxVERTICAL);
    auto const add = [&](wxString const& text, bool bold) {
        auto* const label = new wxStaticText(this, wxID_ANY, wxString());
        if (bold)
            label->SetFont(label->GetFont().Bold());
        setWrappedLabel(*label, text, textWidth(*this, widthInCharacters));
        texts->Add(label, 0, wxBOTTOM, Distances(*this).gap);
    };
    add(m_heading, true);
    for (wxString const& paragraph : paragraphs)
        add(paragraph, false);
    return texts;
}

} // namespace quillon
