#include "tarvikclient/gui/noticewindow.h"

#include "tarvikclient/gui/artprovider.h"
#include "tarvikclient/gui/dialoglayout.h"

#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/display.h>
#include <wx/frame.h>
#include <wx/intl.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

namespace quillon {

namespace {

constexpr int widthInCharacters = 56;
constexpr int fromTheTop = 12; // of the screen's height: a dialog of the session comes to stand in the middle
constexpr long style = wxCAPTION | wxCLOSE_BOX | wxSYSTEM_MENU | wxCLIP_CHILDREN;

/// Owned by the toolkit. No child of its owner, which is hidden: a child would be in no task bar.
class NoticeWindow final : public wxFrame {
public:
    NoticeWindow(wxWindow& owner, Notice const& notice);
    ~NoticeWindow() override;

    bool ShouldPreventAppExit() const override { return false; }

private:
    wxSizer* makeTexts(wxWindow* parent, Notice const& notice) const;
    wxSizer* makeButtons(wxWindow* parent, Notice const& notice) const;
    void onOwnerDestroyed(wxWindowDestroyEvent& event);

    wxWindow* m_owner;
};

NoticeWindow::NoticeWindow(wxWindow& owner, Notice const& notice)
    : wxFrame(nullptr, wxID_ANY, _("TarvikClient"), wxDefaultPosition, wxDefaultSize, style),
      m_owner(&owner) {
    SetIcons(programIcons());
    Distances const space(*this);
    auto* const panel = new wxPanel(this);
    auto* const upper = new wxBoxSizer(wxHORIZONTAL);
    upper->Add(
        new wxStaticBitmap(panel, wxID_ANY, wxArtProvider::GetBitmap(wxART_WARNING, wxART_MESSAGE_BOX)), 0,
        wxRIGHT, space.margin);
    upper->Add(makeTexts(panel, notice), 1);
    auto* const rows = new wxBoxSizer(wxVERTICAL);
    rows->Add(upper, 1, wxEXPAND | wxALL, space.margin);
    rows->Add(makeButtons(panel, notice), 0, wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM, space.margin);
    panel->SetSizer(rows);
    auto* const whole = new wxBoxSizer(wxVERTICAL);
    whole->Add(panel, 1, wxEXPAND);
    SetSizer(whole);
    whole->SetSizeHints(this);
    wxRect const screen = wxDisplay(this).GetClientArea();
    CentreOnScreen();
    Move(GetPosition().x, screen.y + screen.height / fromTheTop);
    Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
        if (event.GetKeyCode() == WXK_ESCAPE && !event.HasAnyModifiers())
            Close();
        else
            event.Skip();
    });
    m_owner->Bind(wxEVT_DESTROY, &NoticeWindow::onOwnerDestroyed, this);
}

NoticeWindow::~NoticeWindow() {
    if (m_owner)
        m_owner->Unbind(wxEVT_DESTROY, &NoticeWindow::onOwnerDestroyed, this);
}

wxSizer* NoticeWindow::makeTexts(wxWindow* parent, Notice const& notice) const {
    auto* const texts = new wxBoxSizer(wxVERTICAL);
    for (wxString const& text : {notice.heading, notice.text}) {
        auto* const control = new wxStaticText(parent, wxID_ANY, wxString());
        if (texts->IsEmpty())
            control->SetFont(control->GetFont().Bold());
        control->SetLabelText(text);
        control->Wrap(widthInCharacters * parent->GetCharWidth());
        texts->Add(control, 0, wxBOTTOM, Distances(*parent).gap);
    }
    return texts;
}

wxSizer* NoticeWindow::makeButtons(wxWindow* parent, Notice const& notice) const {
    auto* const buttons = new wxBoxSizer(wxHORIZONTAL);
    buttons->AddStretchSpacer();
    if (!notice.button.empty()) {
        auto* const act = new wxButton(parent, wxID_ANY, notice.button);
        act->Bind(wxEVT_BUTTON, [action = notice.action](wxCommandEvent&) { action(); });
        buttons->Add(act, 0, wxRIGHT, Distances(*parent).gap);
    }
    auto* const close = new wxButton(parent, wxID_CLOSE);
    close->Bind(wxEVT_BUTTON, [parent](wxCommandEvent&) { wxGetTopLevelParent(parent)->Close(); });
    close->SetDefault();
    close->SetFocus();
    buttons->Add(close);
    return buttons;
}

void NoticeWindow::onOwnerDestroyed(wxWindowDestroyEvent& event) {
    event.Skip();
    if (event.GetEventObject() != m_owner) // but one of its children
        return;
    m_owner = nullptr;
    Destroy();
}

} // namespace

void showNotice(wxWindow& owner, Notice const& notice) {
    (new NoticeWindow(owner, notice))->Show();
}

} // namespace quillon
