// A main frame with a real client and a home of its own.
#pragma once

#include "gui/windowtest.h"
#include "support/temporarydirectory.h"
#include "tarvikclient/gui/mainframe.h"

#include <gtest/gtest.h>
#include <wx/weakref.h>

#include <string>

namespace quillon {

/// A port on loopback that takes connections, as long as this object lives, and never answers. Afterwards
/// connections are refused.
class SilentListener {
public:
    SilentListener();
    ~SilentListener();
    SilentListener(SilentListener const&) = delete;
    SilentListener& operator=(SilentListener const&) = delete;

    std::string authority() const { return "127.0.0.1:" + std::to_string(m_port); }
    /// Whether somebody has connected.
    bool hasCaller() const;

private:
    int m_socket;
    unsigned m_port = 0;
};

class FrameTest : public testing::Test {
protected:
    FrameTest();
    ~FrameTest() override;

    /// Makes the frame; before that the home may be filled.
    void makeFrame();
    bool isGone() const { return !frame; }
    /// Lets events happen until the frame is gone.
    bool goes(double seconds = 10) {
        return eventually([this] { return isGone(); }, seconds);
    }
    /// As the client's thread would.
    void notify(ClientNotifyId id, int number, wxString const& text = wxString());
    void startOn(std::string const& authority) { frame->start("tarvik://me@" + authority + "/start"); }
    String settings() const { return m_home.file(".Tarvik/tarvikclient.xml"); }

    test::TemporaryDirectory m_home;
    wxWeakRef<TarvikMainFrame> frame;
};

} // namespace quillon
