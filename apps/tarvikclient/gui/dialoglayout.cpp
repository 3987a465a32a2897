#include "tarvikclient/gui/dialoglayout.h"

#include "tarvikclient/gui/platform/accessibility.h"

#include <wx/display.h>
#include <wx/msgdlg.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stockitem.h>
#include <wx/toplevel.h>

#include <algorithm>

namespace quillon {

namespace {

/// What the contents of a window can have of its screen.
wxSize roomFor(wxWindow const& window) {
    int const display = wxDisplay::GetFromWindow(&window);
    wxRect const area = wxDisplay(display == wxNOT_FOUND ? 0u : unsigned(display)).GetClientArea();
    constexpr int frame = 2; // lines for the title bar: nobody knows its height before it is shown
    return area.GetSize() - wxSize(0, frame * window.GetCharHeight());
}

} // namespace

Distances::Distances(wxWindow const& window) : margin(window.FromDIP(12)), gap(window.FromDIP(8)) {}

void useOwnLabels(wxDialog& dialog) {
    auto* const box = dynamic_cast<wxMessageDialog*>(&dialog);
    if (!box)
        return;
    box->SetOKLabel(wxGetStockLabel(wxID_OK));
    box->SetYesNoLabels(wxGetStockLabel(wxID_YES), wxGetStockLabel(wxID_NO));
}

wxSize inCharacters(wxWindow const& window, wxSize const& size) {
    wxSize pixels(size.x * window.GetCharWidth(), size.y * window.GetCharHeight());
    pixels.DecTo(roomFor(window));
    return pixels;
}

void centre(wxTopLevelWindow& window) {
    if (window.GetParent() && window.GetParent()->IsShownOnScreen())
        window.CentreOnParent();
    else
        window.CentreOnScreen();
}

ScrolledContents::ScrolledContents(wxWindow* parent)
    : wxScrolledWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL | wxBORDER_NONE) {
    SetScrollRate(GetCharWidth(), GetCharHeight());
    setAccessibleName(*this, parent->GetLabel());
}

void ScrolledContents::fitWindow(wxSize const& least, bool keepLarger) {
    wxWindow& window = *wxGetTopLevelParent(this);
    wxSizer& layout = *window.GetSizer();
    wxSize const whole = GetSizer()->CalcMin();
    setArea(whole);
    wxSize const tooMuch = layout.CalcMin() - roomFor(window);
    // A bar that scrolls one way takes room the other way.
    wxSize bars(tooMuch.y > 0 ? wxSystemSettings::GetMetric(wxSYS_VSCROLL_X, this) : 0,
                tooMuch.x > 0 ? wxSystemSettings::GetMetric(wxSYS_HSCROLL_Y, this) : 0);
    bars.IncTo(wxSize(0, 0)); // where the system does not say
    // What has nothing in it that takes the keys does so itself where they have something to scroll.
    if (tooMuch.x > 0 || tooMuch.y > 0)
        m_container.EnableSelfFocus();
    else
        m_container.DisableSelfFocus();
    wxSize area = whole + bars;
    area.DecBy(std::max(0, tooMuch.x + bars.x), std::max(0, tooMuch.y + bars.y));
    setArea(area);

    wxSize wanted = layout.CalcMin();
    wanted.IncTo(least);
    window.SetMinClientSize(wanted);
    if (keepLarger)
        wanted.IncTo(window.GetClientSize());
    window.SetClientSize(wanted);
    FitInside();
    window.Layout();
}

void ScrolledContents::setArea(wxSize const& area) {
    SetMinClientSize(area);
    InvalidateBestSize();
}

} // namespace quillon
