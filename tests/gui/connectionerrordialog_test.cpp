#include "tarvikclient/gui/connectionerrordialog.h"

#include "gui/windowtest.h"
#include "tarvikclient/gui/model/language.h"

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/button.h>
#include <wx/clipbrd.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/uiaction.h>

namespace quillon {

namespace {

class Dialog : public TarvikClientConnectionErrorDialog {
public:
    Dialog() : TarvikClientConnectionErrorDialog(nullptr) {}
    using ConnectionErrorDialog::errorDetails;
    using ConnectionErrorDialog::errorHappened;
    using ConnectionErrorDialog::errorHeading;
};

wxString withoutLineBreaks(wxString text) {
    text.Replace("\n", "");
    return text;
}

} // namespace

TEST(ConnectionErrorDialog, escape_closes_it) {
    Dialog dialog;
    whenModal([](wxDialog&) { wxUIActionSimulator().Char(WXK_ESCAPE); });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

TEST(ConnectionErrorDialog, keeps_its_buttons_on_a_small_screen_whatever_the_text) {
    wxString lines;
    for (int i = 0; i < 10000; ++i)
        lines += "a line\n";
    for (wxString const& text : {wxString(), wxString('W', 1000), wxString(' ', 1000), wxString('\n', 1000),
                                 lines, wxString('x', 1000000), wxString("word ", 1) + wxString('i', 1000)}) {
        Dialog dialog;
        dialog.setGateway(text);
        dialog.setAdvice(adviceOn({}, {text}));
        dialog.setErrorContent(text);
        dialog.Show();
        wxTheApp->Yield();
        EXPECT_LE(dialog.GetSize().GetWidth(), 1024);
        EXPECT_LE(dialog.GetSize().GetHeight(), 600);
        for (char const* label : {"Settings", "Log", "Retry", "Quit"}) {
            wxRect const frame = dialog.GetClientRect();
            EXPECT_TRUE(frame.Contains(wxWindow::FindWindowByLabel(label, &dialog)->GetRect()))
                << label << " of " << text.length();
        }
    }
}

TEST(ConnectionErrorDialog, details_stand_as_they_came_and_are_copied_by_the_keyboard) {
    wxString const given = "Code: 7(a & b)\n&Retry <b>now</b> &amp; && %s";
    Dialog dialog;
    dialog.setErrorContent(given);
    EXPECT_EQ(dialog.errorDetails->GetValue(), given);
    EXPECT_FALSE(dialog.errorDetails->IsEditable());
    whenModal([&](wxDialog&) {
        dialog.errorDetails->SetFocus();
        eventually([&] { return dialog.errorDetails->HasFocus(); });
        wxUIActionSimulator keys;
        keys.Char('A', wxMOD_CONTROL);
        keys.Char('C', wxMOD_CONTROL);
        eventually([] { return false; }, 0.2);
        keys.Char(WXK_ESCAPE);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
    wxClipboardLocker const clipboard;
    wxTextDataObject copied;
    EXPECT_TRUE(wxTheClipboard->GetData(copied));
    EXPECT_EQ(copied.GetText(), given);
    dialog.setErrorContent(L"Code: 60\nfor 'a\x202E\x1b[31mb\x200B'");
    EXPECT_EQ(dialog.errorDetails->GetValue(), "Code: 60\nfor 'a[31mb'");
}

TEST(ConnectionErrorDialog, breaks_no_word_that_goes_into_a_line) {
    wxString words;
    for (int i = 0; i < 60; ++i)
        words += wxString::Format("gateway-%d.example.com:8443 ", i);
    Dialog dialog;
    dialog.setAdvice({words, "one"});
    wxString shown = dialog.errorHappened->GetLabelText();
    EXPECT_GT(shown.Freq('\n'), 10);
    shown.Replace("\n", " ");
    EXPECT_EQ(shown, words.Trim());
}

TEST(ConnectionErrorDialog, names_the_gateway_in_the_heading) {
    wxLocale locale;
    initLanguage(locale, wxLANGUAGE_ENGLISH);
    Dialog dialog;
    EXPECT_EQ(dialog.errorHeading->GetLabelText(), "The connection to the gateway failed.");
    dialog.setGateway("a&b.<i>example");
    EXPECT_EQ(dialog.errorHeading->GetLabelText(), "The connection to a&b.<i>example failed.");
    dialog.setGateway("first" + wxString('m', 990) + ".last");
    wxString const heading = withoutLineBreaks(dialog.errorHeading->GetLabelText());
    EXPECT_LE(heading.length(), 100u);
    EXPECT_TRUE(heading.Contains("first"));
    EXPECT_TRUE(heading.Contains(".last"));
    wxTranslations::Set(nullptr);
}

} // namespace quillon
