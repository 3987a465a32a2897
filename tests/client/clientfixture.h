// A client with a home of its own and a gateway to talk to.
#pragma once

#include "client/fakegateway.h"
#include "client/recordingnotify.h"
#include "client/signedmodule.h"
#include "support/logcapture.h"
#include "tarvikclient/client.h"

#include <gtest/gtest.h>

#include <memory>

namespace quillon::test {

/// Sets HOME to a new directory whose settings trust the gateway. The client is made by makeClient(), after
/// which the log is captured.
class ClientTest : public ::testing::Test {
protected:
    ClientTest();
    ~ClientTest() override;

    void makeClient();
    /// Makes the client unless there is one, runs `url` and waits for the end. Returns the notifications.
    std::vector<std::string> runSession(String const& url);
    std::vector<std::string> runSession() { return runSession(m_gateway.launchUrl()); }

    /// Captures the log anew, without what was logged before.
    void restartLog();

    /// Serves a test module as the archive of every configuration.
    void serveModule(std::string const& name);
    /// What the module wrote down, one call a line.
    std::vector<std::string> calls(std::string const& directory) const;

    std::string dataDirectory() const { return m_home.path() + "/.Tarvik/"; }
    std::string pluginDirectory() const { return dataDirectory() + "/Plugin"; }
    /// Every file under the home directory but the client's lists of what it installed, relative to it, in
    /// order.
    std::vector<std::string> filesAtHome() const;

    TemporaryDirectory m_home;
    FakeGateway m_gateway;
    RecordingNotify m_notify;
    IGatewayConsent* m_consent = nullptr; // given to the client
    std::vector<std::string> m_audit;     // the client's lines; to be read when its thread has ended
    std::unique_ptr<TarvikClient> m_client;
    std::unique_ptr<LogCapture> m_log;
};

using Lines = std::vector<std::string>;

} // namespace quillon::test
