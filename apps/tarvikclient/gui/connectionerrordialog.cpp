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
constexpr int largestWidth = 90; // where the screen has no height for it
constexpr int fewestLines = 1;
constexpr int mostLines = 6;
constexpr std::size_t longestName = 40;
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
    m_heading = _("CONNECTION_ERROR_NO_NAME");
    if (!gateway.empty())
        // TRANSLATORS: {gateway} is the name of the gateway's host.
        m_heading = filledIn(_("CONNECTION_ERROR"), {{"{gateway}", strangersText(gateway, longestName)}});
    fit();
}

void TarvikClientConnectionErrorDialog::setAdvice(ConnectionAdvice const& advice) {
    m_advice = advice;
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

void TarvikClientConnectionErrorDialog::fit() {
    for (int const characters : {widthInCharacters, largestWidth}) {
        int const width = textWidth(*this, characters);
        wrapTexts(width);
        if (fitDetails(width))
            break;
    }
    centre(*this);
}

void TarvikClientConnectionErrorDialog::wrapTexts(int width) {
    int const left = width - errorHeading->GetPosition().x; // beside the picture
    setWrappedLabel(*errorHeading, m_heading, left);
    setWrappedLabel(*errorHappened, m_advice.happened, left);
    setWrappedLabel(*errorToDo, m_advice.whatToDo, left);
    errorHappened->Show(!m_advice.happened.empty());
    errorToDo->Show(!m_advice.whatToDo.empty());
}

/// The details get what the screen has left, and are scrolled.
bool TarvikClientConnectionErrorDialog::fitDetails(int width) {
    constexpr int frame = 45; // of the window manager, in pixels of a small screen
    int const height = wxDisplay(this).GetClientArea().GetHeight() - frame;
    for (int lines = std::clamp(errorDetails->GetNumberOfLines() + 1, fewestLines, mostLines);
         lines >= fewestLines; --lines) {
        errorDetails->SetMinSize(wxSize(width, (lines + 1) * GetCharHeight()));
        GetSizer()->SetSizeHints(this);
        if (GetSize().GetHeight() <= height)
            return true;
    }
    return false;
}

void TarvikClientConnectionErrorDialog::onRetry(wxCommandEvent&) {
    EndModal(retry);
}

void TarvikClientConnectionErrorDialog::onQuit(wxCommandEvent&) {
    EndModal(quit);
}

} // namespace quillon
