#include "tarvikclient/gui/connectionerrordialog.h"

#include "tarvikclient/gui/dialoglayout.h"
#include "tarvikclient/gui/model/strangerstext.h"
#include "tarvikclient/gui/wrappedtext.h"

#include <wx/display.h>
#include <wx/intl.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <algorithm>

namespace quillon {

namespace {

constexpr int widthInCharacters = 64;
constexpr int fewestLines = 2;
constexpr int mostLines = 6;
constexpr std::size_t longestName = 60;
constexpr std::size_t mostCharacters = 2000; // far more than there are; one line of 40000 takes minutes

constexpr wchar_t ellipsis = 0x2026;

} // namespace

TarvikClientConnectionErrorDialog::TarvikClientConnectionErrorDialog(wxWindow* parent)
    : ConnectionErrorDialog(parent, _("Error")) {
    errorDetails->SetWindowStyleFlag((errorDetails->GetWindowStyleFlag() & ~wxBORDER_MASK) | wxBORDER_SIMPLE);
    Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
        if (event.GetKeyCode() == WXK_ESCAPE)
            Close();
        else
            event.Skip();
    });
    setGateway(wxString());
}

void TarvikClientConnectionErrorDialog::setGateway(wxString const& gateway) {
    // TRANSLATORS: shown instead of CONNECTION_ERROR when the gateway's name is not known.
    wxString heading = _("CONNECTION_ERROR_NO_NAME");
    if (!gateway.empty())
        // TRANSLATORS: {gateway} is the name of the gateway's host.
        heading = filledIn(_("CONNECTION_ERROR"), {{"{gateway}", strangersText(gateway, longestName)}});
    setText(*errorHeading, heading);
    fit();
}

void TarvikClientConnectionErrorDialog::setAdvice(ConnectionAdvice const& advice) {
    setText(*errorHappened, advice.happened);
    setText(*errorToDo, advice.whatToDo);
    fit();
}

void TarvikClientConnectionErrorDialog::setErrorContent(wxString const& text) {
    wxString shown = strangersLines(text.Left(mostCharacters));
    if (text.length() > mostCharacters)
        shown += ellipsis;
    errorDetails->ChangeValue(shown);
    errorDetails->SetInsertionPoint(0);
    fit();
}

void TarvikClientConnectionErrorDialog::setText(wxStaticText& label, wxString const& text) {
    setWrappedLabel(label, text, textWidth(*this, widthInCharacters) - label.GetPosition().x);
    label.Show(!text.empty());
}

/// The details get what the screen has left, and are scrolled.
void TarvikClientConnectionErrorDialog::fit() {
    int const needed = errorDetails->GetNumberOfLines() + 1;
    int lines = std::clamp(needed, fewestLines, mostLines);
    int const height = wxDisplay(this).GetClientArea().GetHeight() * 9 / 10;
    do {
        errorDetails->SetMinSize(wxSize(textWidth(*this, widthInCharacters), (lines + 1) * GetCharHeight()));
        GetSizer()->SetSizeHints(this);
    } while (GetSize().GetHeight() > height && --lines >= fewestLines);
    centre(*this);
}

void TarvikClientConnectionErrorDialog::onRetry(wxCommandEvent&) {
    EndModal(retry);
}

void TarvikClientConnectionErrorDialog::onQuit(wxCommandEvent&) {
    EndModal(quit);
}

} // namespace quillon
