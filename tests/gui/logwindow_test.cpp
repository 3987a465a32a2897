#include "tarvikclient/gui/logwindow.h"

#include "gui/windowtest.h"
#include "support/temporarydirectory.h"
#include "tarvikclient/gui/nestedloops.h"

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/clipbrd.h>
#include <wx/filedlg.h>
#include <wx/frame.h>
#include <wx/textctrl.h>
#include <wx/uiaction.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace quillon {

namespace {

class LogWindow : public testing::Test {
protected:
    LogWindow() : owner(new wxFrame(nullptr, wxID_ANY, "never shown")) {}
    ~LogWindow() override {
        if (owner)
            owner->Destroy();
        EXPECT_TRUE(eventually([&] { return windows() == 0; }));
    }

    void append(std::string_view text) { std::ofstream(path.str(), std::ios::app) << text; }
    void show() {
        showLogWindow(owner, wxString(path.str()), "gate.example:8443");
        EXPECT_TRUE(eventually([&] { return window() && window()->IsShownOnScreen(); }));
    }
    static int windows() {
        int count = 0;
        for (wxWindow* const window : wxTopLevelWindows)
            count += window->GetLabel() == "LOGS_TITLE" && window->IsShown();
        return count;
    }
    static wxWindow* window() { return wxWindow::FindWindowByLabel("LOGS_TITLE"); }
    static wxTextCtrl* text() {
        for (wxWindow* const child : window()->GetChildren().front()->GetChildren())
            if (auto* const control = dynamic_cast<wxTextCtrl*>(child))
                return control;
        return nullptr;
    }
    static bool hasHint() { return wxWindow::FindWindowByLabel("LOGS_EMPTY", window())->IsShown(); }
    static bool endsWith(wxString const& line) { return text()->GetValue().EndsWith(line); }
    static bool isAtEnd() {
        return text()->GetScrollPos(wxVERTICAL) + text()->GetScrollThumb(wxVERTICAL) + 2 >=
               text()->GetScrollRange(wxVERTICAL);
    }
    /// Calls `act` from within the event loop of the file dialog that is opened next.
    void whenChoosing(std::function<void(wxFileDialog&)> act) {
        wxTheApp->CallAfter([this, act = std::move(act)] { act(*dialogs.find<wxFileDialog>()); });
    }
    static wxString clipboard() {
        wxTextDataObject data;
        wxClipboardLocker const lock;
        return wxTheClipboard->GetData(data) ? data.GetText() : wxString();
    }
    static std::string lines(int count) {
        std::string text;
        for (int i = 0; i < count; ++i)
            text += "a line of the log, which is number " + std::to_string(i) + "\n";
        return text;
    }

    std::string const home = std::getenv("HOME");
    test::TemporaryDirectory directory;
    String const path = directory.file("test.log");
    wxFrame* owner;
    NestedLoops dialogs;
};

TEST_F(LogWindow, follows_the_end_and_keeps_the_selection_when_text_comes) {
    append(lines(1000));
    show();
    EXPECT_TRUE(eventually([] { return endsWith("number 999\n") && isAtEnd(); }));
    text()->SetSelection(2, 6);
    append("caf\xc3\xa9\n");
    EXPECT_TRUE(eventually([] { return endsWith(wxString::FromUTF8("caf\xc3\xa9\n")) && isAtEnd(); }));
    EXPECT_EQ(text()->GetStringSelection(), "line");
    EXPECT_FALSE(hasHint());
    EXPECT_FALSE(text()->IsEditable());
}

TEST_F(LogWindow, does_not_move_while_the_user_reads_further_up) {
    append(lines(1000));
    show();
    ASSERT_TRUE(eventually(isAtEnd));
    wxTextCtrl* const control = text();
    ASSERT_FALSE(eventually([&] { return !isAtEnd(); }, 0.6)); // one poll at the end
    control->ShowPosition(10000);
    ASSERT_TRUE(eventually([] { return !isAtEnd(); }));
    int position = 0;
    auto const moves = [&] { return control->GetScrollPos(wxVERTICAL) != position; };
    while (eventually(moves, 0.3)) // the control takes a moment to arrive there
        position = control->GetScrollPos(wxVERTICAL);
    append(lines(200) + "last\n");
    EXPECT_FALSE(eventually(moves, 1.2));
    control->ShowPosition(control->GetLastPosition());
    EXPECT_TRUE(eventually([] { return endsWith("last\n") && isAtEnd(); }));
}

TEST_F(LogWindow, holds_a_few_mebibytes_at_most) {
    append("first\n");
    show();
    std::string const line(99, 'x');
    std::string much;
    for (int i = 0; i < 60000; ++i)
        much += line + "\n";
    append(much + "last\n");
    ASSERT_TRUE(eventually([] { return endsWith("last\n"); }, 30));
    wxString const shown = text()->GetValue();
    EXPECT_LE(shown.length(), 4u << 20);
    EXPECT_GE(shown.length(), 2u << 20);
    EXPECT_EQ(shown.BeforeFirst('\n'), line) << "cut within a line";
}

TEST_F(LogWindow, tells_when_there_is_no_log_until_one_appears_and_begins_anew_with_a_new_one) {
    show();
    EXPECT_TRUE(hasHint());
    EXPECT_FALSE(window()->FindWindow(wxID_COPY)->IsEnabled());
    append("old text\n");
    EXPECT_TRUE(eventually([] { return !hasHint() && endsWith("old text\n"); }));
    std::ofstream(path.str(), std::ios::trunc) << "new\n";
    EXPECT_TRUE(eventually([] { return text()->GetValue() == "new\n"; }));
}

TEST_F(LogWindow, names_its_file_and_goes_for_another_one) {
    append("text\n");
    show();
    auto const places = [] {
        int count = 0;
        for (wxWindow* const child : window()->GetChildren().front()->GetChildren())
            count += child->GetToolTipText().EndsWith("test.log");
        return count;
    };
    EXPECT_EQ(places(), 1);
    showLogWindow(owner, "", "");
    EXPECT_TRUE(eventually([] { return windows() == 1; }));
    EXPECT_NE(wxWindow::FindWindowByLabel("LOGS_NOWHERE"), nullptr);
    show();
    EXPECT_TRUE(eventually([&] { return windows() == 1 && places() == 1; }));
}

TEST_F(LogWindow, is_one_and_closes_with_the_window_it_was_opened_for) {
    show();
    show();
    EXPECT_EQ(windows(), 1);
    std::exchange(owner, nullptr)->Destroy();
    EXPECT_TRUE(eventually([] { return windows() == 0; }));
    show();
    EXPECT_EQ(windows(), 1);
    press(*window(), wxID_CLOSE);
    EXPECT_EQ(windows(), 0);
    show(); // at once, while the last one is on its way out
    EXPECT_EQ(windows(), 1);
    wxUIActionSimulator().Char(WXK_ESCAPE);
    EXPECT_TRUE(eventually([] { return windows() == 0; }));
}

TEST_F(LogWindow, copies_the_selection_or_else_everything) {
    append("one two " + home + "\n");
    show();
    press(*window(), wxID_COPY);
    EXPECT_EQ(clipboard(), "one two ~\n") << "tells where the user is at home";
    text()->SetSelection(4, 8 + static_cast<long>(home.size()));
    wxUIActionSimulator().Char('C', wxMOD_CONTROL);
    EXPECT_TRUE(eventually([] { return clipboard() == "two ~"; })) << clipboard();
    text()->SetSelection(8, -1);
    text()->Copy(); // as the control's own menu does
    EXPECT_TRUE(eventually([] { return clipboard() == "~\n"; })) << clipboard();
}

TEST_F(LogWindow, saves_the_whole_file_and_tells_when_it_cannot) {
    append(home + "/bytes \xff\n" + lines(50000)); // more than is shown
    show();
    MessageBoxes messages;
    messages.answer = wxID_YES;
    messages.Register();
    using Texts = std::vector<wxString>;
    auto const saveAs = [&](String const& destination) {
        messages.texts.clear();
        whenChoosing([chosen = wxString(destination.str())](wxFileDialog& chooser) {
            chooser.SetPath(chosen);
            EXPECT_TRUE(eventually([&] { return chooser.GetPath() == chosen; })) << chooser.GetPath();
            chooser.EndModal(wxID_OK);
        });
        press(*window(), wxID_SAVE);
        return messages.texts;
    };
    std::string const logged = test::readFile(path), saved = "~" + logged.substr(home.size());
    for (Texts const& asked : {Texts{}, Texts{"LOGS_REPLACE"}}) {
        EXPECT_EQ(saveAs(directory.file("copy")), asked);
        EXPECT_TRUE(test::readFile(directory.file("copy")) == saved); // too long to be shown
        test::writeFile(directory.file("copy"), "old");
    }
    EXPECT_EQ(saveAs(path), (Texts{"LOGS_REPLACE", "LOGS_NOT_SAVED"}));
    EXPECT_EQ(saveAs("/dev/full").back(), "LOGS_NOT_SAVED");
    std::filesystem::create_directory(directory.path() + "/directory");
    EXPECT_EQ(saveAs(directory.file("directory")), Texts{"LOGS_NOT_SAVED"});
    EXPECT_EQ(test::readFile(path), logged) << "the log was saved over itself";
}

TEST_F(LogWindow, lives_with_modal_dialogs_and_goes_when_its_file_dialog_has_closed) {
    append("text\n");
    wxDialog dialog(nullptr, wxID_ANY, "modal");
    whenModal([&](wxDialog&) {
        show();
        append("more\n");
        EXPECT_TRUE(eventually([] { return endsWith("more\n"); }));
        dialog.EndModal(wxID_OK);
    });
    dialog.ShowModal();
    EXPECT_EQ(windows(), 1);
    whenChoosing([&](wxFileDialog&) { std::exchange(owner, nullptr)->Destroy(); });
    press(*window(), wxID_SAVE); // comes back because the window ends its dialog
    EXPECT_EQ(windows(), 0);
}

} // namespace

} // namespace quillon
