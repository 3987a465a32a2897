// What the tests of the main frame have in common.
#pragma once

#include "client/fakegateway.h"
#include "gui/windowtest.h"
#include "support/temporarydirectory.h"
#include "tarvikclient/gui/mainframe.h"

#include <gtest/gtest.h>
#include <wx/weakref.h>

#include <filesystem>

namespace quillon {

/// A place for a main frame with a real client: a home of its own and a gateway that the settings there
/// trust.
class FrameTest : public testing::Test {
protected:
    FrameTest() {
        setenv("HOME", home.path().c_str(), 1);
        std::filesystem::create_directory(data);
        std::filesystem::permissions(data, std::filesystem::perms::owner_all);
        test::writeFile(settings, oldSettings);
        dialogs.Register();
    }
    ~FrameTest() override {
        if (frame)
            frame->Close(true);
        EXPECT_TRUE(goes());
        EXPECT_EQ(mainhiddenframe, nullptr);
        std::filesystem::current_path("/"); // the client had made the home's directory the current one
    }

    void makeFrame() {
        frame = mainhiddenframe = new TarvikMainFrame(nullptr, wxID_ANY, "test");
        // After the frame's own hook, so that it comes first: a box that it answers is not shown to anybody.
        dialogs.Unregister();
        dialogs.Register();
    }
    /// Lets events happen until the frame is gone.
    bool goes(double seconds = 10) {
        return eventually([this] { return !frame; }, seconds);
    }

    test::TemporaryDirectory home;
    test::FakeGateway gateway;
    std::string const data = home.path() + "/.Tarvik";
    String const settings = home.file(".Tarvik/tarvikclient.xml");
    std::string const oldSettings =
        "<tarvikclient><proxy><credentials><login>old</login><password>p</password></credentials></proxy>"
        "<sslcertignoredomains><domains>" +
        gateway.server().authority() + "</domains></sslcertignoredomains></tarvikclient>";
    wxWeakRef<TarvikMainFrame> frame;
    MessageBoxes dialogs;
};

} // namespace quillon
