#include "tarvikclient/gui/conversion.h"

#include "curl/requestinfo.h"
#include "tarvikclient/gui/clientwxevent.h"

#include <gtest/gtest.h>
#include <wx/app.h>

#include <clocale>
#include <string>
#include <vector>

namespace quillon {

namespace {

/// The C library's encoding, for one test.
class Encoding {
public:
    explicit Encoding(char const* locale) : m_before(std::setlocale(LC_CTYPE, nullptr)) {
        EXPECT_NE(std::setlocale(LC_CTYPE, locale), nullptr);
    }
    ~Encoding() { std::setlocale(LC_CTYPE, m_before.c_str()); }

private:
    std::string m_before;
};

TEST(Conversion, takesTextThroughTheEncodingAndBack) {
    Encoding const utf8("C.UTF-8");
    for (char const* const text : {"", "tarvik://u@gw/?lang=de", "\xC3\xBC \xE2\x82\xAC", "\xF0\x9F\x98\x80"})
        EXPECT_EQ(wxToQuillonString(quillonToWxString(text)).view(), text);
}

TEST(Conversion, givesNothingRatherThanHalfOfWhatTheEncodingCannotExpress) {
    Encoding const ascii("C");
    EXPECT_EQ(wxToQuillonString("plain").view(), "plain");
    EXPECT_TRUE(wxToQuillonString(wxString::FromUTF8("gr\xC3\xBC\xC3\x9F")).empty());
}

TEST(Conversion, showsBytesThatAreNoUtf8) {
    EXPECT_EQ(quillonToWxString("caf\xE9"), wxString::FromUTF8("caf\xC3\xA9"));
    EXPECT_EQ(quillonToWxString("\xC3"), wxString::FromUTF8("\xC3\x83")); // cut in the middle of a character
}

TEST(Conversion, readsNoFurtherThanTheString) {
    EXPECT_EQ(quillonToWxString(String("connected", 7)), "connect");
    EXPECT_EQ(quillonToWxString(String("a\0b", 3)).length(), 3u);
}

/// Receives the client's notifications as the frame does.
class Receiver : public wxEvtHandler {
public:
    Receiver() {
        Bind(EVT_TYPE_CLIENTNOTIFY, [this](wxThreadEvent& event) {
            received.push_back(std::to_string(event.GetId()) + " " + std::to_string(event.GetInt()) + " " +
                               std::string(event.GetString().utf8_str()));
        });
    }

    std::vector<std::string> received;
};

/// Events are queued only while there is an application.
class NotifyHandler : public testing::Test {
protected:
    void SetUp() override { wxApp::SetInstance(&m_app); }
    void TearDown() override { wxApp::SetInstance(nullptr); }

private:
    wxAppConsole m_app;
};

TEST_F(NotifyHandler, queuesTheNotificationsInOrderAndHandlesNoneItself) {
    Receiver receiver;
    std::string line = "connected\nip=10.8.0.2";
    TarvikClientGuiNotifyHandler handler(&receiver);
    handler.onDispatch(CLIENT_TYPE_PLUGINDLL_NOTUNNEL);
    handler.onStatus(STATUS_HOSTCHECKING);
    handler.onVpnStatus(String(line.data(), static_cast<unsigned>(line.size())));
    handler.onVpnStatus(String::null);
    handler.onFatalError("b\xC3\xB6se");
    handler.onConnectError(RequestInfo());
    line.assign(line.size(), 'x'); // a module's line does not outlive the call
    EXPECT_TRUE(receiver.received.empty());

    while (receiver.received.size() < 6)
        receiver.ProcessPendingEvents();
    auto const format = RequestInfo().format();
    EXPECT_EQ(receiver.received,
              (std::vector<std::string>{"5 4 ", "2 5 ", "3 0 connected\nip=10.8.0.2", "3 0 ",
                                        "4 0 b\xC3\xB6se", "1 0 " + std::string(format.view())}));
}

} // namespace

} // namespace quillon
