#include "gui/windowtest.h"
#include "tarvikclient/gui/aboutdialog.h"
#include "tarvikclient/gui/connectionerrordialog.h"
#include "tarvikclient/gui/debug.h"

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/button.h>
#include <wx/scrolwin.h>
#include <wx/stattext.h>
#include <wx/translation.h>

#include <cstdint>
#include <map>

namespace quillon {

namespace {

class Dialog : public TarvikClientConnectionErrorDialog {
public:
    Dialog() : TarvikClientConnectionErrorDialog(nullptr) {}
    using ConnectionErrorDialog::detailsArea;
    using ConnectionErrorDialog::errorDetails;
    using ConnectionErrorDialog::errorHeading;
};

wxButton* button(wxWindow& dialog, wxString const& label) {
    for (wxWindow* const child : dialog.GetChildren())
        if (auto* const found = dynamic_cast<wxButton*>(child); found && found->GetLabelText() == label)
            return found;
    return nullptr;
}

void pressEscape(wxDialog& dialog) {
    wxKeyEvent event(wxEVT_CHAR_HOOK);
    event.m_keyCode = WXK_ESCAPE;
    event.SetEventObject(&dialog);
    dialog.ProcessWindowEvent(event);
}

/// What ShowModal() returns when `act` is done to the dialog.
int resultOf(std::function<void(wxDialog&)> act) {
    Dialog dialog;
    dialog.setErrorContent("Code: 7");
    whenModal(std::move(act));
    return dialog.ShowModal();
}

wxString withoutLineBreaks(wxString text) {
    text.Replace("\n", "");
    return text;
}

/// A catalogue in memory: two tables of length and offset, then the texts.
class Catalogue final : public wxTranslationsLoader {
public:
    wxMsgCatalog* LoadCatalog(wxString const& domain, wxString const&) override {
        std::map<std::string, std::string> const texts = {{"", "Content-Type: text/plain; charset=UTF-8\n"},
                                                          {"CONNECTION_ERROR", "No way to {gateway}."},
                                                          {"CONNECTION_ERROR_NO_NAME", "No way."}};
        auto const count = std::uint32_t(texts.size());
        std::vector<std::uint32_t> words = {0x950412de, 0, count, 28, 28 + 8 * count, 0, 0};
        std::string data;
        auto const add = [&](std::string const& text) {
            words.push_back(std::uint32_t(text.size()));
            words.push_back(28 + 16 * count + std::uint32_t(data.size()));
            data.append(text).push_back('\0');
        };
        for (auto const& text : texts)
            add(text.first);
        for (auto const& text : texts)
            add(text.second);
        data.insert(0, reinterpret_cast<char const*>(words.data()), 4 * words.size());
        return wxMsgCatalog::CreateFromData(
            wxCharBuffer(wxScopedCharBuffer::CreateNonOwned(data.data(), data.size())), domain);
    }
    wxArrayString GetAvailableTranslations(wxString const&) const override { return wxArrayString(1, "de"); }
};

void useCatalogue() {
    auto* const translations = new wxTranslations;
    translations->SetLoader(new Catalogue);
    translations->SetLanguage("de");
    wxTranslations::Set(translations);
    translations->AddCatalog("test");
}

} // namespace

TEST(ConnectionErrorDialog, returnsTheUsersChoice) {
    EXPECT_EQ(resultOf([](wxDialog& dialog) { press(dialog, "Retry"); }), 2);
    EXPECT_EQ(resultOf([](wxDialog& dialog) { press(dialog, "Quit"); }), 1);
    EXPECT_EQ(resultOf([](wxDialog& dialog) { dialog.Close(); }), wxID_CANCEL);
    EXPECT_EQ(resultOf(pressEscape), wxID_CANCEL);
}

TEST(ConnectionErrorDialog, leavesTheSettingsToWhoeverShowsIt) {
    int asked = 0;
    EXPECT_EQ(resultOf([&](wxDialog& dialog) {
                  dialog.Bind(
                      wxEVT_BUTTON, [&](wxCommandEvent&) { ++asked; }, 1000);
                  press(dialog, "Settings");
                  EXPECT_TRUE(dialog.IsModal());
                  press(dialog, "Retry");
              }),
              2);
    EXPECT_EQ(asked, 1);
}

TEST(ConnectionErrorDialog, keepsItsButtonsOnASmallScreenWhateverTheText) {
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
            EXPECT_TRUE(frame.Contains(button(dialog, label)->GetRect())) << label << " of " << text.length();
        }
    }
}

TEST(ConnectionErrorDialog, wrapsALongTextWithoutLosingAny) {
    wxString words;
    for (int i = 0; i < 300; ++i)
        words += wxString::Format("word%d ", i);
    Dialog dialog;
    dialog.setErrorContent(wxString('W', 1000));
    EXPECT_EQ(withoutLineBreaks(dialog.errorDetails->GetLabelText()), wxString('W', 1000));
    dialog.setErrorContent(words);
    wxString shown = dialog.errorDetails->GetLabelText();
    EXPECT_GT(shown.Freq('\n'), 10);
    shown.Replace("\n", " ");
    EXPECT_EQ(shown, words.Trim());
    dialog.Show();
    wxTheApp->Yield();
    EXPECT_GT(dialog.detailsArea->GetVirtualSize().GetHeight(),
              dialog.detailsArea->GetClientSize().GetHeight());
    EXPECT_GE(dialog.detailsArea->GetClientSize().GetWidth(), dialog.errorDetails->GetBestSize().GetWidth());
}

TEST(ConnectionErrorDialog, showsTheNetworksTextAsItIs) {
    Dialog dialog;
    for (char const* text : {"Code: 7(a & b)\n&Retry <b>now</b> &amp; &&", "", "one"}) {
        dialog.setErrorContent(text);
        EXPECT_EQ(dialog.errorDetails->GetLabelText(), text);
    }
}

TEST(ConnectionErrorDialog, namesTheGatewayInTheHeading) {
    useCatalogue();
    Dialog dialog;
    EXPECT_EQ(dialog.errorHeading->GetLabelText(), "No way.");
    dialog.setGateway("a&b.<i>example");
    EXPECT_EQ(dialog.errorHeading->GetLabelText(), "No way to a&b.<i>example.");
    dialog.setGateway("first" + wxString('m', 990) + ".last");
    wxString const heading = withoutLineBreaks(dialog.errorHeading->GetLabelText());
    EXPECT_LE(heading.length(), 80u);
    EXPECT_TRUE(heading.Contains("first"));
    EXPECT_TRUE(heading.EndsWith(".last."));
    dialog.setGateway("");
    EXPECT_EQ(dialog.errorHeading->GetLabelText(), "No way.");
    wxTranslations::Set(nullptr);
}

TEST(ConnectionErrorDialogAbout, endsByItsButtonItsTitleBarAndEscape) {
    std::function<void(wxDialog&)> const ways[] = {[](wxDialog& dialog) { press(dialog, wxID_CLOSE); },
                                                   [](wxDialog& dialog) { dialog.Close(); }, pressEscape};
    for (auto const& way : ways) {
        TarvikClientAboutDialog dialog(nullptr);
        whenModal(way);
        dialog.ShowModal();
        EXPECT_FALSE(dialog.IsShown());
    }
}

TEST(ConnectionErrorDialogDebug, listsTheArgumentsOfTheProcess) {
    char name[] = "program", argument[] = "tarvik://100%25?a=%s";
    char* arguments[] = {name, argument};
    EXPECT_EQ(debug::describeParameters(2, arguments),
              wxString::Format("PID: %lu\n\nARGS:\n0: program\n", wxGetProcessId()) + "1: " + argument +
                  "\n");
}

} // namespace quillon
