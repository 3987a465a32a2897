#include "tarvikclient/gui/wrappedtext.h"

#include <wx/dcclient.h>
#include <wx/display.h>
#include <wx/stattext.h>
#include <wx/tokenzr.h>

#include <algorithm>

namespace quillon {

namespace {

// A label of more lines would outgrow what the window system can draw.
constexpr int mostLines = 400;
constexpr std::size_t mostCharacters = 40000;

constexpr wchar_t ellipsis = 0x2026;

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

void setWrappedLabel(wxStaticText& label, wxString const& text, int width) {
    label.SetLabelText(wrapped(label, text, width));
}

int textWidth(wxWindow const& window, int characters) {
    wxDisplay const display(&window);
    return std::min(characters * window.GetCharWidth(), display.GetClientArea().GetWidth() * 7 / 8);
}

} // namespace quillon
