// A gateway in the test process.
#pragma once

#include "base/string.h"
#include "support/testserver.h"

#include <map>
#include <mutex>

namespace quillon::test {

/// A JSON object as keys and the texts of their values, so that a test can leave a key out or spoil it.
using JsonObject = std::map<std::string, std::string>;

std::string toJson(JsonObject const& object);
inline std::string quoted(std::string const& text) {
    return "\"" + text + "\"";
}

/// Answers requests by path from a table, 404 for the rest. The table may change at any time.
class FakeGateway {
public:
    FakeGateway() : m_server([this](Request const& request) { return answer(request); }) {}

    void serve(std::string const& path, Reply reply);
    void serve(std::string const& path, std::string const& body) { serve(path, ok(body)); }
    /// The mediation reply: success with this result.
    void serveResult(JsonObject const& result);

    /// Configurations of each kind that the client accepts. Archives are expected at /modules/module.zip.
    /// What a configuration says of modules; `values`, JSON texts, replace the usual ones.
    static std::string modules(JsonObject values = {});
    JsonObject pluginConfiguration() const;
    JsonObject noTunnelConfiguration() const;
    JsonObject hostcheckerConfiguration() const;

    /// A settings file that trusts this gateway.
    std::string settings(std::string const& more = "") const {
        return "<tarvikclient><sslcertignoredomains><domains>" + m_server.authority() +
               "</domains></sslcertignoredomains>" + more + "</tarvikclient>";
    }
    String launchUrl(std::string const& userInfo = "ticket-1") const;
    TestServer& server() { return m_server; }
    /// How many requests came for a path.
    std::size_t count(std::string const& path) const;

private:
    Reply answer(Request const& request);

    mutable std::mutex m_mutex;
    std::map<std::string, Reply> m_replies;
    TestServer m_server; // last: it calls answer()
};

} // namespace quillon::test
