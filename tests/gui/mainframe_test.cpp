#include "tarvikclient/gui/mainframe.h"

#include "client/fakegateway.h"
#include "gui/framefixture.h"
#include "gui/traymanager.h"
#include "support/logcapture.h"
#include "tarvikclient/gui/configurationdialog.h"
#include "tarvikclient/gui/connectionerrordialog.h"
#include "tarvikclient/gui/conversion.h"
#include "tarvikclient/gui/notificationpanel.h"

#include <wx/msgdlg.h>
#include <wx/textctrl.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace quillon {

namespace {

/// Sees every modal dialog before it is shown, and answers the message boxes in the user's place.
class Dialogs final : public wxModalDialogHook {
public:
    int errors = 0;
    wxString message;
    int answer = wxID_OK;

private:
    int Enter(wxDialog* dialog) override {
        errors += dynamic_cast<TarvikClientConnectionErrorDialog*>(dialog) ? 1 : 0;
        auto* const box = dynamic_cast<wxMessageDialog*>(dialog);
        if (!box)
            return wxID_NONE;
        message = box->GetMessage();
        return answer;
    }
};

class MainFrame : public FrameTest {
protected:
    void makeFrame() {
        FrameTest::makeFrame();
        // After the frame's own hook, so that it comes first: a box that it answers is not shown to anybody.
        dialogs.Register();
    }
    TarvikClientNotificationPanel* panel() {
        for (wxWindow* const window : wxTopLevelWindows)
            if (auto* const found = dynamic_cast<TarvikClientNotificationPanel*>(window))
                return found;
        return nullptr;
    }
    /// Changes the login in the settings dialog and presses a button.
    void editAndPress(int button) {
        whenModal([button](wxDialog& dialog) {
            auto* const login =
                dynamic_cast<wxTextCtrl*>(wxWindow::FindWindowByName(wxTextCtrlNameStr, &dialog));
            login->SetValue("edited");
            press(dialog, button);
        });
        frame->showConfigurationDialogModal(nullptr);
    }

    Dialogs dialogs;
};

constexpr char oldSettings[] = "<tarvikclient><proxy><credentials><login>old</login><password>p</password>"
                               "</credentials></proxy></tarvikclient>";

} // namespace

TEST_F(MainFrame, ARefusedConnectionMayBeRetriedAndThenLeft) {
    std::string const authority = SilentListener().authority();
    makeFrame();
    whenModal([](wxDialog& first) {
        press(first, "Retry");
        whenModal([](wxDialog& second) { press(second, "Quit"); });
    });
    startOn(authority);
    EXPECT_TRUE(goes());
    EXPECT_EQ(dialogs.errors, 2);
}

TEST_F(MainFrame, AConnectionErrorClosedFromItsTitleBarChangesNothing) {
    std::string const authority = SilentListener().authority();
    makeFrame();
    bool closed = false;
    whenModal([&](wxDialog& dialog) { closed = dialog.Close(); });
    startOn(authority);
    ASSERT_TRUE(eventually([&] { return closed && !openModalDialog(); }));
    EXPECT_FALSE(goes(0.5));
    frame->stop();
    EXPECT_TRUE(goes());
    EXPECT_EQ(dialogs.errors, 1);
}

TEST_F(MainFrame, ASessionThatHangsInItsFirstRequestEndsSoonAfterStop) {
    SilentListener const gateway;
    makeFrame();
    startOn(gateway.authority());
    ASSERT_TRUE(eventually([&] { return gateway.hasCaller(); }));
    frame->stop();
    EXPECT_TRUE(goes(4));
    EXPECT_EQ(dialogs.errors, 0);
}

TEST_F(MainFrame, ACloseRequestIsRefusedWhileTheSessionRunsAndEndsIt) {
    SilentListener const gateway;
    makeFrame();
    startOn(gateway.authority());
    ASSERT_TRUE(eventually([&] { return gateway.hasCaller(); }));
    EXPECT_FALSE(frame->Close());
    EXPECT_TRUE(goes(4));
}

TEST_F(MainFrame, AForcedCloseTakesARunningSessionWithIt) {
    SilentListener const gateway;
    makeFrame();
    startOn(gateway.authority());
    ASSERT_TRUE(eventually([&] { return gateway.hasCaller(); }));
    EXPECT_TRUE(frame->Close(true));
    EXPECT_TRUE(goes(4));
}

// A named pipe where the module's archive belongs keeps the session in a call that nothing cuts off, until
// the other end is opened.
TEST_F(MainFrame, ASessionThatCannotBeEndedIsLeftBehindUnharmed) {
    test::FakeGateway gateway;
    gateway.serveResult(gateway.pluginConfiguration());
    test::writeFile(settings(), "<tarvikclient><sslcertignoredomains><domains>" +
                                    gateway.server().authority() +
                                    "</domains></sslcertignoredomains></tarvikclient>");
    std::string const pipe = m_home.path() + "/.Tarvik/Plugin/module.zip";
    std::filesystem::create_directory(m_home.path() + "/.Tarvik/Plugin");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    makeFrame();
    test::LogCapture const log;
    frame->start(quillonToWxString(gateway.launchUrl()));
    ASSERT_TRUE(gateway.server().awaitRequests(1));
    EXPECT_FALSE(goes(1)) << "the session has not got to the pipe";
    frame->Close(true);
    EXPECT_TRUE(goes());
    EXPECT_TRUE(log.contains("is left behind"));

    std::filesystem::rename(pipe, pipe + ".read"); // so that a file can be written in its place
    int const end = open((pipe + ".read").c_str(), O_WRONLY | O_NONBLOCK);
    EXPECT_GE(end, 0) << "nobody waits at the pipe";
    close(end);
    EXPECT_TRUE(Thread::waitAllThread(10000));
}

TEST_F(MainFrame, AFinishedSessionWaitsForAnOpenDialog) {
    makeFrame();
    bool survived = false;
    whenModal([&](wxDialog& dialog) {
        notify(CLIENTNOTIFY_STATUS, STATUS_FINISHED);
        eventually([&] { return isGone(); }, 0.5);
        survived = !isGone() && dialog.IsModal();
        press(dialog, wxID_CLOSE);
    });
    frame->showAbout();
    EXPECT_FALSE(isGone()) << "destroyed under the handler that had opened the dialog";
    EXPECT_TRUE(survived);
    EXPECT_TRUE(goes());
}

TEST_F(MainFrame, AFinishedSessionWaitsForAnOpenMenu) {
    makeFrame();
    {
        MenuLoop const menu;
        notify(CLIENTNOTIFY_STATUS, STATUS_FINISHED);
        EXPECT_FALSE(goes(0.5));
    }
    EXPECT_TRUE(goes());
}

TEST_F(MainFrame, StopEndsTheDialogsThatAreOpenAndSavesNothing) {
    test::writeFile(settings(), oldSettings);
    makeFrame();
    bool onTop = false;
    whenModal([&](wxDialog& error) {
        whenModal([&](wxDialog& top) {
            onTop = dynamic_cast<TarvikClientConfigurationDialog*>(&top) != nullptr;
            frame->showConfigurationDialogModal(nullptr); // as from the icon: raises the one that is open
            frame->stop();
        });
        press(error, ConnectionErrorDialog::settingsButtonId);
    });
    notify(CLIENTNOTIFY_CONNECT_ERROR, 0, "Code: 7");
    EXPECT_TRUE(goes());
    EXPECT_TRUE(onTop);
    EXPECT_EQ(dialogs.errors, 1);
    EXPECT_EQ(test::readFile(settings()), oldSettings);
}

TEST_F(MainFrame, ASecondConnectionErrorOpensNoSecondDialog) {
    makeFrame();
    bool together = false;
    whenModal([&](wxDialog& dialog) {
        notify(CLIENTNOTIFY_CONNECT_ERROR, 0, "Code: 28");
        eventually([] { return wxWindow::FindWindowByLabel("Code: 28") != nullptr; });
        together = dialogs.errors == 1 && openModalDialog() == &dialog;
        press(dialog, wxID_EXIT);
    });
    notify(CLIENTNOTIFY_CONNECT_ERROR, 0, "Code: 7");
    EXPECT_TRUE(goes());
    EXPECT_TRUE(together);
}

TEST_F(MainFrame, AFatalErrorEndsTheProgramWhateverIsOpen) {
    makeFrame();
    whenModal([&](wxDialog&) { notify(CLIENTNOTIFY_FATAL_ERROR, 0, "not for the user"); });
    frame->showAbout();
    EXPECT_TRUE(goes());
    EXPECT_EQ(dialogs.message, "UNKNOWN_ERROR_HAS_OCCURED");
}

TEST_F(MainFrame, StopEndsAMessageBoxToo) {
    makeFrame();
    dialogs.answer = wxID_NONE; // shown
    notify(CLIENTNOTIFY_FATAL_ERROR, 0);
    wxTimer user;
    user.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { frame->stop(); });
    user.StartOnce(500);
    EXPECT_TRUE(goes());
}

TEST_F(MainFrame, OnlyConfirmedSettingsAreSaved) {
    test::writeFile(settings(), oldSettings);
    makeFrame();
    editAndPress(wxID_CANCEL);
    EXPECT_EQ(test::readFile(settings()), oldSettings);
    editAndPress(wxID_OK);
    EXPECT_NE(test::readFile(settings()).find("<login>edited</login>"), std::string::npos);
}

TEST_F(MainFrame, SettingsThatCannotBeSavedAreToldAndTheFileIsKept) {
    test::writeFile(settings(), oldSettings);
    std::filesystem::create_directory(m_home.path() + "/.Tarvik/tarvikclient.xml.new"); // in the way
    makeFrame();
    editAndPress(wxID_OK);
    EXPECT_TRUE(dialogs.message.StartsWith("SETTINGS_NOT_SAVED ")) << dialogs.message;
    EXPECT_EQ(test::readFile(settings()), oldSettings);
}

TEST_F(MainFrame, OnlyAHostCheckRemovesTheIcon) {
    test::TrayManager tray;
    makeFrame();
    ASSERT_TRUE(eventually([&] { return tray.hasIcon(); }));
    EXPECT_FALSE(panel()->IsShown());
    for (int const type : {CLIENT_TYPE_PLUGINDLL, CLIENT_TYPE_PLUGINDLL_NOTUNNEL})
        notify(CLIENTNOTIFY_DISPATCH, type);
    EXPECT_FALSE(eventually([&] { return !tray.hasIcon(); }, 0.5));
    notify(CLIENTNOTIFY_DISPATCH, CLIENT_TYPE_HOSTCHECKER);
    EXPECT_TRUE(eventually([&] { return !tray.hasIcon(); }));
}

TEST_F(MainFrame, ThePanelKeepsTheMenuWhereThereIsNoOtherPlaceForIt) {
    makeFrame();
    ASSERT_TRUE(eventually([&] { return panel()->IsShown(); }));
    notify(CLIENTNOTIFY_DISPATCH, CLIENT_TYPE_HOSTCHECKER);
    notify(CLIENTNOTIFY_VPN_STATUS, 0, "connected");
    eventually([] { return false; }, 0.3);
    panel()->Close();
    EXPECT_TRUE(panel()->IsShown());
}

} // namespace quillon
