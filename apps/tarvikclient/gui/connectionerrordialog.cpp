#include "tarvikclient/gui/connectionerrordialog.h"

#include "tarvikclient/gui/dialoglayout.h"

#include <wx/dcclient.h>
#include <wx/intl.h>
#include <wx/scrolwin.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/tokenzr.h>

#include <algorithm>

namespace quillon {

namespace {

constexpr int widthInCharacters = 60;
constexpr int visibleLines = 12;
constexpr std::size_t longestName = 60;
// A label of more lines would outgrow what the window system can draw.
constexpr int mostLines = 400;
constexpr std::size_t mostCharacters = 40000;

constexpr wchar_t ellipsis = 0x2026;

wxString shortened(wxString const& name) {
    if (name.length() <= longestName)
        return name;
    return name.Left(longestName / 2 - 1) + ellipsis + name.Right(longestName / 2);
}

/// How many characters of the line, at least one, go into `width`; a blank ends them where there is one.
std::size_t charactersThatFit(wxDC const& dc, wxString const& line, int width) {
    // More characters than pixels do not fit, so the rest of a long line need not be measured.
    wxString const start = line.Left(std::size_t(width));
    wxArrayInt widths;
    dc.GetPartialTextExtents(start, widths);
    std::size_t count = 0;
    while (count < widths.size() && widths[count] <= width)
        ++count;
    if (count >= line.length())
        return line.length();
    std::size_t const blank = line.rfind(' ', count);
    bool const atBlank = blank != wxString::npos && blank > 0;
    return atBlank ? blank : std::max<std::size_t>(count, 1);
}

/// The text in lines of at most `width` pixels, broken at blanks or, in a longer run, within it; its end is
/// left out when it has too many lines.
wxString wrapped(wxStaticText& control, wxString const& text, int width) {
    wxClientDC dc(&control);
    dc.SetFont(control.GetFont());
    wxString result;
    int lines = 0;
    wxStringTokenizer paragraphs(text.Left(mostCharacters), "\n", wxTOKEN_RET_EMPTY);
    while (paragraphs.HasMoreTokens()) {
        wxString rest = paragraphs.GetNextToken().Trim();
        do {
            if (++lines > mostLines)
                return result + ellipsis;
            std::size_t const count = charactersThatFit(dc, rest, width);
            result += rest.Left(count) + "\n";
            rest = rest.Mid(count).Trim(false);
        } while (!rest.empty());
    }
    result.RemoveLast(result.empty() ? 0 : 1);
    return text.length() > mostCharacters ? result + ellipsis : result;
}

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
    if (!gateway.empty()) {
        // TRANSLATORS: {gateway} is the name of the gateway's host.
        heading = _("CONNECTION_ERROR");
        heading.Replace("{gateway}", shortened(gateway));
    }
    errorHeading->SetLabelText(wrapped(*errorHeading, heading, widthInCharacters * GetCharWidth()));
    fit();
}

void TarvikClientConnectionErrorDialog::setErrorContent(wxString const& text) {
    errorDetails->SetLabelText(wrapped(*errorDetails, text, widthInCharacters * GetCharWidth()));
    fit();
}

void TarvikClientConnectionErrorDialog::fit() {
    detailsArea->SetScrollRate(0, GetCharHeight());
    detailsArea->FitInside();
    wxSize area = detailsArea->GetSizer()->CalcMin();
    area.SetWidth(std::max(area.GetWidth(), widthInCharacters * GetCharWidth()));
    if (area.GetHeight() > visibleLines * GetCharHeight()) {
        area.SetHeight(visibleLines * GetCharHeight());
        area.IncBy(std::max(0, wxSystemSettings::GetMetric(wxSYS_VSCROLL_X, detailsArea)), 0);
    }
    detailsArea->SetMinClientSize(area);
    GetSizer()->SetSizeHints(this);
    centre(*this);
}

void TarvikClientConnectionErrorDialog::onRetry(wxCommandEvent&) {
    EndModal(retry);
}

void TarvikClientConnectionErrorDialog::onQuit(wxCommandEvent&) {
    EndModal(quit);
}

} // namespace quillon
