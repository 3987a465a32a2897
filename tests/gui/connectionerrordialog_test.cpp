#include "tarvikclient/gui/connectionerrordialog.h"

#include "gui/windowtest.h"
#include "tarvikclient/gui/model/language.h"

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/scrolwin.h>
#include <wx/stattext.h>
#include <wx/uiaction.h>

namespace quillon {

namespace {

class Dialog : public TarvikClientConnectionErrorDialog {
public:
    Dialog() : TarvikClientConnectionErrorDialog(nullptr) {}
    using ConnectionErrorDialog::detailsArea;
    using ConnectionErrorDialog::errorDetails;
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
        dialog.setErrorContent(text);
        dialog.Show();
        wxTheApp->Yield();
        EXPECT_LE(dialog.GetSize().GetWidth(), 1024);
        EXPECT_LE(dialog.GetSize().GetHeight(), 768);
        for (char const* label : {"Settings", "Retry", "Quit"}) {
            wxRect const frame = dialog.GetClientRect();
            EXPECT_TRUE(frame.Contains(wxWindow::FindWindowByLabel(label, &dialog)->GetRect()))
                << label << " of " << text.length();
        }
    }
}

TEST(ConnectionErrorDialog, wraps_a_long_text_without_losing_any) {
    wxString words;
    for (int i = 0; i < 300; ++i)
        words += wxString::Format("word%d ", i);
    Dialog dialog;
    for (char const* text : {"Code: 7(a & b)\n&Retry <b>now</b> &amp; &&", "", "one"}) {
        dialog.setErrorContent(text);
        EXPECT_EQ(dialog.errorDetails->GetLabelText(), text);
    }
    dialog.setErrorContent(wxString('W', 1000));
    EXPECT_EQ(withoutLineBreaks(dialog.errorDetails->GetLabelText()), wxString('W', 1000));
    dialog.setErrorContent(words);
    wxString shown = dialog.errorDetails->GetLabelText();
    EXPECT_GT(shown.Freq('\n'), 10);
    shown.Replace("\n", " ");
    EXPECT_EQ(shown, words.Trim());
    dialog.Show();
    wxTheApp->Yield();
    wxSize const visible = dialog.detailsArea->GetClientSize();
    EXPECT_GT(dialog.detailsArea->GetVirtualSize().GetHeight(), visible.GetHeight());
    EXPECT_GE(visible.GetWidth(), dialog.errorDetails->GetBestSize().GetWidth());
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
    EXPECT_TRUE(heading.EndsWith(".last failed."));
    wxTranslations::Set(nullptr);
}

} // namespace quillon
