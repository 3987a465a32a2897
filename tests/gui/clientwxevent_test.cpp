#include "tarvikclient/gui/clientwxevent.h"

#include <gtest/gtest.h>
#include <wx/app.h>

#include <string>
#include <vector>

namespace quillon {

namespace {

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
