#include "tarvikclient/gui/conversion.h"

#include "tarvikclient/gui/clientwxevent.h"

#include <gtest/gtest.h>
#include <wx/app.h>

#include <clocale>
#include <string>
#include <vector>

namespace quillon {

namespace {

TEST(Conversion, takes_text_through_the_encoding_and_back_or_gives_nothing_rather_than_half) {
    EXPECT_EQ(wxToQuillonString("plain").view(), "plain");
    EXPECT_TRUE(wxToQuillonString(wxString::FromUTF8("gr\xC3\xBC\xC3\x9F")).empty())
        << "not expressible in ASCII";
    ASSERT_TRUE(std::setlocale(LC_CTYPE, "C.UTF-8"));
    for (char const* const text : {"", "tarvik://u@gw/?lang=de", "\xC3\xBC \xE2\x82\xAC", "\xF0\x9F\x98\x80"})
        EXPECT_EQ(wxToQuillonString(quillonToWxString(text)).view(), text);
    std::setlocale(LC_CTYPE, "C");
}

TEST(Conversion, shows_bytes_that_are_no_utf8_and_reads_no_further_than_the_string) {
    EXPECT_EQ(quillonToWxString("caf\xE9"), wxString::FromUTF8("caf\xC3\xA9"));
    EXPECT_EQ(quillonToWxString("\xC3"), wxString::FromUTF8("\xC3\x83")); // cut in the middle of a character
    EXPECT_EQ(quillonToWxString(String("connected", 7)), "connect");
    EXPECT_EQ(quillonToWxString(String("a\0b", 3)).length(), 3u);
}

TEST(NotifyHandler, queues_the_notifications_in_order_and_handles_none_itself) {
    wxAppConsole app; // events are queued only while there is an application
    wxApp::SetInstance(&app);
    wxEvtHandler frame;
    std::vector<std::string> received;
    frame.Bind(EVT_TYPE_CLIENTNOTIFY, [&](wxThreadEvent& event) {
        received.push_back(std::to_string(event.GetId()) + " " + std::to_string(event.GetInt()) + " " +
                           event.GetString().utf8_string());
    });
    std::string line = "connected\nip=10.8.0.2";
    TarvikClientGuiNotifyHandler handler(&frame);
    handler.onStatus(STATUS_HOSTCHECKING);
    handler.onVpnStatus(String(line.data(), static_cast<unsigned>(line.size())));
    handler.onFatalError("b\xC3\xB6se");
    line.assign(line.size(), 'x'); // a module's line does not outlive the call
    EXPECT_TRUE(received.empty());

    while (received.size() < 3)
        frame.ProcessPendingEvents();
    EXPECT_EQ(received, (std::vector<std::string>{"2 5 ", "3 0 connected\nip=10.8.0.2", "4 0 b\xC3\xB6se"}));
    wxApp::SetInstance(nullptr);
}

} // namespace

} // namespace quillon
