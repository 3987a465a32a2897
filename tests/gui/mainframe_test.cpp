#include "tarvikclient/gui/mainframe.h"

#include "base/descriptor.h"
#include "gui/frametest.h"
#include "gui/traymanager.h"
#include "support/logcapture.h"
#include "tarvikclient/gui/configurationdialog.h"
#include "tarvikclient/gui/connectionerrordialog.h"
#include "tarvikclient/gui/notificationpanel.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <wx/checkbox.h>
#include <wx/gdicmn.h>
#include <wx/listbox.h>
#include <wx/menu.h>
#include <wx/textctrl.h>

namespace quillon {

namespace {

class MainFrame : public FrameTest {
protected:
    void SetUp() override { makeFrame(); }

    /// As the client's thread would.
    void notify(ClientNotifyId id, int number, wxString const& text = wxString()) {
        auto* const event = new wxThreadEvent(EVT_TYPE_CLIENTNOTIFY, id);
        event->SetInt(number);
        event->SetString(text);
        wxQueueEvent(frame, event);
    }
    /// Starts a session and awaits its first request.
    void start() {
        auto const before = gateway.server().requests().size();
        frame->start(gateway.launchUrl());
        ASSERT_TRUE(gateway.server().awaitRequests(before + 1));
    }
    TarvikClientNotificationPanel* panel() {
        for (wxWindow* const window : wxTopLevelWindows)
            if (auto* const found = dynamic_cast<TarvikClientNotificationPanel*>(window))
                return found;
        return nullptr;
    }
    /// Whether the panel says so.
    bool said(char const* text) { return panel()->IsShown() && wxWindow::FindWindowByLabel(text, panel()); }
    static wxString detailsOf(wxDialog& error) {
        return dynamic_cast<wxTextCtrl&>(*wxWindow::FindWindowByName(wxTextCtrlNameStr, &error)).GetValue();
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
};

} // namespace

TEST_F(MainFrame, a_connection_error_closed_from_its_title_bar_changes_nothing) {
    bool closed = false;
    whenModal([&](wxDialog& dialog) { closed = dialog.Close(); });
    frame->start(String("tarvik://me@127.0.0.1:1/start")); // refused
    ASSERT_TRUE(eventually([&] { return closed && !openModalDialog(); }));
    EXPECT_FALSE(goes(0.5));
    frame->stop();
    EXPECT_TRUE(goes());
    EXPECT_EQ(dialogs.otherDialogs, 1);
}

TEST_F(MainFrame, a_session_that_hangs_in_its_first_request_ends_soon_however_the_user_leaves) {
    gateway.serve("/mediation", silent(test::Reply::hold));
    std::function<void()> const ways[] = {
        [&] { frame->stop(); },
        [&] { EXPECT_FALSE(frame->Close()) << "refused while the session runs"; },
        [&] { EXPECT_TRUE(frame->Close(true)); },
    };
    for (auto const& leave : ways) {
        start();
        leave();
        EXPECT_TRUE(goes(4));
        makeFrame();
    }
    EXPECT_EQ(dialogs.otherDialogs, 0);
}

// Another process that installs keeps the session in a call that nothing cuts off.
TEST_F(MainFrame, a_session_that_cannot_be_ended_is_left_behind_unharmed) {
    gateway.serveResult(gateway.pluginConfiguration());
    ASSERT_EQ(mkdir((data + "/Plugin").c_str(), 0700), 0);
    Descriptor held(open((data + "/Plugin").c_str(), O_RDONLY));
    ASSERT_EQ(flock(held.number(), LOCK_EX), 0);
    test::LogCapture const log;
    start();
    EXPECT_TRUE(eventually([&] { return log.contains("downloadWindowsDll Downloading dll."); }));
    EXPECT_FALSE(goes(0.5)) << "the session does not wait for the lock";
    frame->stop();
    EXPECT_TRUE(said("STATE_LEAVING")) << "at once";
    EXPECT_TRUE(eventually([&] { return said("STATE_ABANDONING"); }, 5));
    frame->Close(true);
    EXPECT_TRUE(goes());
    EXPECT_TRUE(log.contains("is left behind"));

    held = Descriptor();
    EXPECT_TRUE(Thread::waitAllThread(10000));
}

TEST_F(MainFrame, a_finished_session_waits_for_an_open_dialog) {
    bool survived = false;
    whenModal([&](wxDialog& dialog) {
        notify(CLIENTNOTIFY_STATUS, STATUS_FINISHED);
        eventually([&] { return !frame; }, 0.5);
        survived = frame && dialog.IsModal();
        press(dialog, wxID_CLOSE);
    });
    frame->showAbout();
    EXPECT_TRUE(frame != nullptr) << "destroyed under the handler that had opened the dialog";
    EXPECT_TRUE(survived);
    EXPECT_TRUE(goes());
}

TEST_F(MainFrame, a_finished_session_waits_for_an_open_menu) {
    {
        wxMenu menu;
        MenuLoop const loop(menu);
        notify(CLIENTNOTIFY_STATUS, STATUS_FINISHED);
        EXPECT_FALSE(goes(0.5));
    }
    EXPECT_TRUE(goes());
}

TEST_F(MainFrame, stop_ends_the_dialogs_that_are_open_and_saves_nothing) {
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
    EXPECT_EQ(dialogs.otherDialogs, 2);
    EXPECT_EQ(test::readFile(settings), oldSettings);
}

TEST_F(MainFrame, a_second_connection_error_opens_no_second_dialog) {
    bool together = false;
    whenModal([&](wxDialog& dialog) {
        notify(CLIENTNOTIFY_CONNECT_ERROR, 0, "Code: 28");
        eventually([&] { return detailsOf(dialog) == "Code: 28"; });
        together =
            detailsOf(dialog) == "Code: 28" && dialogs.otherDialogs == 1 && openModalDialog() == &dialog;
        press(dialog, wxID_EXIT);
    });
    notify(CLIENTNOTIFY_CONNECT_ERROR, 0, "Code: 7");
    EXPECT_TRUE(goes());
    EXPECT_TRUE(together);
}

TEST_F(MainFrame,
       a_certificate_error_leads_to_the_log_and_to_settings_where_its_gateway_is_ready_but_not_added) {
    frame->Close(true);
    ASSERT_TRUE(goes());
    test::writeFile(settings, "<tarvikclient/>");
    makeFrame();
    wxString const authority = wxString::FromUTF8(gateway.server().authority());
    wxString offered, advice;
    whenModal([&](wxDialog& error) {
        for (wxWindow* const child : error.GetChildren())
            advice += child->GetLabel() + "\n";
        whenModal([&](wxDialog& top) {
            auto* const field = dynamic_cast<wxTextCtrl*>(wxWindow::FindFocus());
            offered = field ? field->GetValue() : wxString();
            auto const& list = dynamic_cast<wxListBox&>(*wxWindow::FindWindowByName(wxListBoxNameStr, &top));
            EXPECT_TRUE(list.IsEmpty());
            press(top, wxID_CANCEL);
        });
        press(error, ConnectionErrorDialog::settingsButtonId);
        press(error, ConnectionErrorDialog::logButtonId);
        EXPECT_TRUE(wxWindow::FindWindowByLabel("LOGS_TITLE"));
        press(error, wxID_EXIT);
    });
    frame->start(gateway.launchUrl());
    EXPECT_TRUE(goes());
    EXPECT_EQ(offered, authority);
    EXPECT_TRUE(advice.Contains("HAPPENED_CERTIFICATE_SELF_SIGNED\n")) << advice;
    EXPECT_TRUE(advice.Contains("TODO_CERTIFICATE TODO_CERTIFICATE_EXCEPTION\n")) << advice;
    EXPECT_EQ(test::readFile(settings), "<tarvikclient/>");
}

TEST_F(MainFrame, a_fatal_error_names_its_kind_in_a_window_of_its_own_in_the_middle) {
    dialogs.answer = wxID_NONE; // shown
    gateway.serve("/mediation", test::json(R"({"success":false,"exception":"a &b <b>%s</b>\u202e"})"));
    std::vector<wxString> texts;
    whenModal([&](wxDialog& box) {
        for (wxWindow* const child : box.GetChildren())
            texts.push_back(child->GetLabel());
        EXPECT_FALSE(box.GetParent());
        EXPECT_FALSE(box.HasFlag(wxFRAME_NO_TASKBAR));
        EXPECT_TRUE(box.HasFlag(wxDIALOG_NO_PARENT));
        wxRect const screen = wxGetClientDisplayRect();
        wxPoint const middle = box.GetScreenRect().GetPosition() + box.GetSize() / 2;
        EXPECT_NEAR(middle.x, screen.GetWidth() / 2, 20);
        EXPECT_NEAR(middle.y, screen.GetHeight() / 2, 20);
        press(box, wxID_OK);
    });
    frame->start(gateway.launchUrl());
    EXPECT_TRUE(goes());
    EXPECT_EQ(texts, (std::vector<wxString>{"&Quit", "", "UNKNOWN_ERROR_HAS_OCCURED", "FATAL_REFUSED",
                                            "FATAL_GATEWAYS_WORDS", "STEP_LINK", "STEP_LOG"}));
}

TEST_F(MainFrame, a_connection_error_waits_until_the_settings_are_closed) {
    whenModal([&](wxDialog& open) {
        notify(CLIENTNOTIFY_CONNECT_ERROR, 0, "Code: 7");
        EXPECT_FALSE(eventually([&] { return openModalDialog() != &open; }, 0.5)) << "locks the settings up";
        whenModal([&](wxDialog& error) { press(error, wxID_EXIT); });
        press(open, wxID_CANCEL);
    });
    frame->showConfigurationDialogModal(nullptr);
    EXPECT_TRUE(goes());
    EXPECT_EQ(dialogs.otherDialogs, 2);
}

TEST_F(MainFrame, a_fatal_error_ends_the_program_whatever_is_open) {
    whenModal([&](wxDialog&) { notify(CLIENTNOTIFY_FATAL_ERROR, 0, "not for the user"); });
    frame->showAbout();
    EXPECT_TRUE(goes());
    EXPECT_EQ(dialogs.texts, std::vector<wxString>{"UNKNOWN_ERROR_HAS_OCCURED"});
}

TEST_F(MainFrame, stop_ends_a_message_box_too) {
    dialogs.answer = wxID_NONE; // shown
    notify(CLIENTNOTIFY_FATAL_ERROR, 0);
    wxTimer user;
    user.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { frame->stop(); });
    user.StartOnce(500);
    EXPECT_TRUE(goes());
}

TEST_F(MainFrame, only_confirmed_settings_are_saved_and_a_failure_is_told_and_keeps_the_file) {
    editAndPress(wxID_CANCEL);
    EXPECT_EQ(test::readFile(settings), oldSettings);
    rlimit const nothing{0, RLIM_INFINITY};
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    setrlimit(RLIMIT_FSIZE, &nothing);
    editAndPress(wxID_OK);
    setrlimit(RLIMIT_FSIZE, &before);
    ASSERT_EQ(dialogs.texts.size(), 1u);
    EXPECT_TRUE(dialogs.texts[0].StartsWith("SETTINGS_NOT_SAVED ")) << dialogs.texts[0];
    EXPECT_EQ(test::readFile(settings), oldSettings);
    editAndPress(wxID_OK);
    EXPECT_NE(test::readFile(settings).find("<login>edited</login>"), std::string::npos);
}

class NewMainFrame : public FrameTest {};

TEST_F(NewMainFrame, works_and_tells_of_settings_that_cannot_be_read) {
    for (char const* const content :
         {"<no xml", "<tarvikclient><proxy><credentials/></proxy></tarvikclient>"}) {
        test::writeFile(settings, content);
        makeFrame();
        frame->tellOfStart();
        wxWindow* const sentence = wxWindow::FindWindowByLabel("SETTINGS_UNREADABLE");
        ASSERT_NE(sentence, nullptr) << content;
        whenModal([](wxDialog& dialog) { press(dialog, wxID_OK); });
        press(*wxGetTopLevelParent(sentence), "Settings");
        EXPECT_EQ(test::readFile(settings + ".broken"), content);
        frame->stop();
        EXPECT_TRUE(goes());
        EXPECT_TRUE(eventually([] { return !wxWindow::FindWindowByLabel("SETTINGS_UNREADABLE"); }));
    }
}

TEST_F(NewMainFrame, tells_how_the_last_session_ended_and_shows_its_log) {
    String const own = home.file(".Tarvik/tarvikclient.log");
    for (std::string const& place : {std::string("/nonexistent"), data + "/tarvikclient.log"}) {
        test::writeFile(own, "what happened\n");
        test::writeFile(home.file(".Tarvik/session-a.mark"),
                        "running 5\nlog " + place + "\ncrashed 9 DllStart2 a.so\n");
        makeFrame();
        frame->tellOfStart();
        wxWindow* const sentence = wxWindow::FindWindowByLabel("LAST_SESSION");
        ASSERT_NE(sentence, nullptr);
        wxWindow* const notice = wxGetTopLevelParent(sentence);
        EXPECT_NE(wxWindow::FindWindowByLabel(place == "/nonexistent"
                                                  ? "LAST_SESSION_MODULE_FAILED LAST_SESSION_ENDED_AT"
                                                  : "LAST_SESSION_MODULE_FAILED LAST_SESSION_ENDED_AT\n\n"
                                                    "LAST_SESSION_ADVICE",
                                              notice),
                  nullptr);
        EXPECT_EQ(wxWindow::FindWindowByLabel("LAST_SESSION_LOG", notice) != nullptr,
                  place != "/nonexistent");
        press(*notice, "LAST_SESSION_LOG");
        wxWindow* const file = wxWindow::FindWindowByLabel("LOGS_FILE"); // in the log's window
        EXPECT_EQ(file && file->GetToolTipText().EndsWith("tarvikclient-last.log"), place != "/nonexistent");
        frame->stop();
        EXPECT_TRUE(goes());
        EXPECT_TRUE(eventually([] { return !wxWindow::FindWindowByLabel("LAST_SESSION"); }));
    }
    makeFrame();
    frame->tellOfStart();
    EXPECT_EQ(wxWindow::FindWindowByLabel("LAST_SESSION"), nullptr) << "told twice";
}

TEST_F(MainFrame, the_choice_of_the_desktops_proxy_is_kept_in_a_file_of_its_own) {
    for (bool const chosen : {true, false}) {
        whenModal([chosen](wxDialog& dialog) {
            auto* const box =
                dynamic_cast<wxCheckBox*>(wxWindow::FindWindowByName(wxCheckBoxNameStr, &dialog));
            EXPECT_EQ(box->GetValue(), !chosen);
            box->SetValue(chosen);
            press(dialog, wxID_OK);
        });
        frame->showConfigurationDialogModal(nullptr);
        EXPECT_EQ(test::readFile(home.file(".Tarvik/use-system-proxy")), chosen ? "yes\n" : "no\n");
        EXPECT_EQ(test::readFile(settings).find("system"), std::string::npos);
    }
}

/// On a desktop with a system tray.
class MainFrameInATray : public MainFrame {
protected:
    static void SetUpTestSuite() { usePictures(); }

    test::TrayManager tray;
};

TEST_F(MainFrameInATray, only_a_host_check_removes_the_icon) {
    ASSERT_TRUE(eventually([&] { return tray.hasIcon(); }));
    EXPECT_FALSE(panel()->IsShown());
    for (int const type : {CLIENT_TYPE_PLUGINDLL, CLIENT_TYPE_PLUGINDLL_NOTUNNEL})
        notify(CLIENTNOTIFY_DISPATCH, type);
    EXPECT_FALSE(eventually([&] { return !tray.hasIcon(); }, 0.5));
    notify(CLIENTNOTIFY_DISPATCH, CLIENT_TYPE_HOSTCHECKER);
    EXPECT_TRUE(eventually([&] { return !tray.hasIcon(); }));
}

TEST_F(MainFrame, the_panel_keeps_the_menu_where_there_is_no_other_place_for_it) {
    ASSERT_TRUE(eventually([&] { return panel()->IsShown(); }));
    notify(CLIENTNOTIFY_DISPATCH, CLIENT_TYPE_HOSTCHECKER);
    notify(CLIENTNOTIFY_VPN_STATUS, 0, "connected");
    EXPECT_TRUE(eventually([&] { return said("STATE_CONNECTED"); }));
    panel()->Close();
    EXPECT_FALSE(panel()->IsShown());
    frame->bringBack();
    EXPECT_TRUE(panel()->IsShown());
}

TEST_F(MainFrame, the_next_link_starts_a_session_once_none_can_be_retried) {
    bool closed = false;
    whenModal([&](wxDialog& dialog) {
        EXPECT_FALSE(frame->startNext(String(gateway.launchUrl()))) << "this one can be retried";
        closed = dialog.Close();
    });
    frame->start(String("tarvik://me@127.0.0.1:1/start")); // refused
    EXPECT_TRUE(said("STATE_ASKING"));
    ASSERT_TRUE(eventually([&] { return closed && !openModalDialog(); }));
    EXPECT_TRUE(said("STATE_FAILED"));
    gateway.serve("/mediation", silent(test::Reply::hold));
    EXPECT_TRUE(frame->startNext(String(gateway.launchUrl())));
    EXPECT_TRUE(gateway.server().awaitRequests(1));
    EXPECT_FALSE(frame->startNext(String(gateway.launchUrl()))) << "this one runs";
    frame->stop();
    EXPECT_TRUE(said("STATE_LEAVING"));
    EXPECT_TRUE(goes());
}

} // namespace quillon
