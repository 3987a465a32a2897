#include "client/fakegateway.h"

#include <algorithm>

namespace quillon::test {

namespace {

std::string download(std::string const& filename, std::string const& urlpath) {
    return toJson({{"filename", quoted(filename)}, {"urlpath", quoted(urlpath)}});
}

} // namespace

std::string toJson(JsonObject const& object) {
    std::string text = "{";
    for (auto const& [key, value] : object)
        text += (text.size() > 1 ? "," : "") + quoted(key) + ":" + value;
    return text + "}";
}

void FakeGateway::serve(std::string const& path, Reply reply) {
    std::lock_guard lock(m_mutex);
    m_replies[path] = std::move(reply);
}

void FakeGateway::serveResult(JsonObject const& result) {
    serve("/mediation", json(toJson({{"success", "true"}, {"result", toJson(result)}})));
}

std::string FakeGateway::modules(JsonObject values) {
    values.merge(JsonObject{{"filename", quoted("module.zip")},
                            {"urlpath", quoted("/modules/")},
                            {"pattern", quoted("module.so")},
                            {"version", quoted("7.1")}});
    return toJson({{"mac", toJson(values)}});
}

JsonObject FakeGateway::pluginConfiguration() const {
    return {{"type", quoted("plugindll")},
            {"orgname", quoted("acme")},
            {"server", quoted("10.0.0.1")},
            {"certPassword", quoted("cert-secret")},
            {"login", quoted("alice")},
            {"ticket", quoted("ticket-2")},
            {"sessionid", quoted("session-3")},
            {"pluginDlls", modules()},
            {"certificates",
             toJson({{"cert", download("client.pem", "/certs/")}, {"ca", download("ca.pem", "/certs/")}})},
            {"clientid", quoted("client-4")}};
}

JsonObject FakeGateway::noTunnelConfiguration() const {
    return {
        {"type", quoted("plugindllnotunnel")}, {"orgname", quoted("acme")},      {"pluginDlls", modules()},
        {"service", quoted("the service")},    {"clientid", quoted("client-4")}, {"safetype", "-5"}};
}

JsonObject FakeGateway::hostcheckerConfiguration() const {
    return {{"type", quoted("hostchecker")},
            {"hostcheckerDlls", modules()},
            {"hostcheckingrequest", quoted("a=b & c")},
            {"responseurl", quoted(m_server.url("/hostcheck"))},
            {"hostname", quoted("desk-1")},
            {"language", quoted("en")},
            {"hostcheckingtimer", "3600"}};
}

String FakeGateway::launchUrl(std::string const& userInfo) const {
    std::string const authority = (userInfo.empty() ? "" : userInfo + "@") + m_server.authority();
    return String::copyOf("tarvik://" + authority + "/mediation?lang=en&clientversion=1");
}

std::size_t FakeGateway::count(std::string const& path) const {
    auto const requests = m_server.requests();
    return static_cast<std::size_t>(std::count_if(
        requests.begin(), requests.end(), [&](Request const& request) { return request.path() == path; }));
}

Reply FakeGateway::answer(Request const& request) {
    std::lock_guard lock(m_mutex);
    auto const found = m_replies.find(request.path());
    return found == m_replies.end() ? status(404) : found->second;
}

} // namespace quillon::test
