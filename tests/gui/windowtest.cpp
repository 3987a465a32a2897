#include "gui/windowtest.h"

#include "tarvikclient/gui/artprovider.h"
#include "tarvikclient/gui/fatalerrordialog.h"

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/msgdlg.h>
#include <wx/stopwatch.h>
#include <wx/timer.h>
#include <wx/uiaction.h>
#include <wx/utils.h>

namespace quillon {

namespace {

/// The tests run inside the application's own main loop: modal dialogs and pending deletions then behave as
/// they do in the program.
class TestApp final : public wxApp {
public:
    bool OnInit() override {
        SetExitOnFrameDelete(false);
        CallAfter([this] {
            m_result = RUN_ALL_TESTS();
            ExitMainLoop();
        });
        return true;
    }
    int OnRun() override {
        wxApp::OnRun();
        return m_result;
    }

    /// wxWidgets' own message box would wait for a user.
    void OnAssertFailure(wxChar const* file, int line, wxChar const*, wxChar const* condition,
                         wxChar const* message) override {
        // An icon without a picture, of which the tests have none.
        if (wxString(condition).Contains("icon.IsOk()"))
            return;
        ADD_FAILURE() << wxString(file).utf8_string() << ":" << line << " "
                      << wxString(condition).utf8_string() << " "
                      << wxString(message ? message : wxS("")).utf8_string();
    }

private:
    int m_result = 1;
};

void send(wxWindow* button) {
    if (!button)
        return;
    wxCommandEvent event(wxEVT_BUTTON, button->GetId());
    event.SetEventObject(button);
    button->ProcessWindowEvent(event);
}

} // namespace

wxDialog* openModalDialog() {
    wxDialog* last = nullptr;
    for (wxWindow* const window : wxTopLevelWindows)
        if (auto* const dialog = dynamic_cast<wxDialog*>(window); dialog && dialog->IsModal())
            last = dialog;
    return last;
}

bool eventually(std::function<bool()> const& condition, double seconds) {
    wxStopWatch const watch;
    while (!condition()) {
        if (static_cast<double>(watch.Time()) > seconds * 1000)
            return false;
        wxTheApp->Yield();
        wxMilliSleep(5);
    }
    return true;
}

void whenModal(std::function<void(wxDialog&)> act) {
    auto* const timer = new wxTimer;
    timer->Bind(wxEVT_TIMER, [timer, act = std::move(act)](wxTimerEvent&) {
        wxDialog* const dialog = openModalDialog();
        if (!dialog || !dialog->IsShownOnScreen())
            return;
        timer->Stop();
        act(*dialog);
        wxTheApp->CallAfter([timer] { delete timer; });
    });
    timer->Start(20);
}

void press(wxWindow& window, int id) {
    send(wxWindow::FindWindowById(id, &window));
}

void press(wxWindow& window, char const* label) {
    send(wxWindow::FindWindowByLabel(label, &window));
}

void clickOn(wxWindow& window, int mouseButton) {
    wxUIActionSimulator mouse;
    wxPoint const middle(window.GetSize().x / 2, window.GetSize().y / 2);
    mouse.MouseMove(window.ClientToScreen(middle));
    mouse.MouseClick(mouseButton);
}

void usePictures() {
    TarvikClientArtProvider::init();
    wxArtProvider::Push(new TarvikClientArtProvider);
}

int MessageBoxes::Enter(wxDialog* dialog) {
    if (auto* const box = dynamic_cast<wxMessageDialog*>(dialog))
        texts.push_back(box->GetMessage());
    else if (auto* const fatal = dynamic_cast<TarvikClientFatalErrorDialog*>(dialog))
        texts.push_back(fatal->heading());
    else
        return ++otherDialogs, wxID_NONE;
    return answer;
}

} // namespace quillon

wxIMPLEMENT_APP_NO_MAIN(quillon::TestApp);

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    return wxEntry(argc, argv);
}
