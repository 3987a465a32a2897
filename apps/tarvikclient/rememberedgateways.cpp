#include "tarvikclient/rememberedgateways.h"

#include "base/file.h"
#include "base/log.h"
#include "tarvikclient/policyrules.h"
#include "tarvikclient/trustedfile.h"
#include "xml/stringparser.h"

#include <unistd.h>

#include <algorithm>

namespace quillon {

namespace {

constexpr std::size_t most = 100;
constexpr unsigned ownerOnly = 0600; // a list that others could write does not count
constexpr char rootName[] = "gateways";
constexpr char itemName[] = "gateway";

void complain(char const* method, String const& text) {
    log(ERROR, "RememberedGateways", method, text);
}

std::vector<http::HostPort> parse(String const& text) {
    std::vector<http::HostPort> gateways;
    std::unique_ptr<xml::Element> const root = xml::StringParser::parse(text);
    if (root->getName() != rootName)
        return gateways;
    for (xml::Element const* const item : root->getElementsByName(itemName))
        if (auto const gateway = http::HostPort::parse(item->getText(), gatewayPort))
            gateways.push_back(*gateway);
    return gateways;
}

String textOf(std::vector<http::HostPort> const& gateways) {
    xml::Element root(rootName);
    for (http::HostPort const& gateway : gateways)
        root.appendElement(itemName).appendText(gateway.toString(gatewayPort));
    return root.toXml("") + "\n";
}

} // namespace

RememberedGateways::RememberedGateways()
    : RememberedGateways(File::getUserApplicationDataDirectory() + "gateways.xml") {}

std::vector<http::HostPort> RememberedGateways::load() const {
    try {
        auto const text = readTrustedFile(m_path, geteuid());
        return text ? parse(*text) : std::vector<http::HostPort>();
    } catch (EUntrustedFile const& e) {
        complain("load", m_path + " does not count: " + e.reason());
    } catch (Exception const&) { // logged where it was thrown
        complain("load", m_path + " does not count: it is no list of gateways");
    }
    return {};
}

bool RememberedGateways::contains(http::HostPort const& gateway) const {
    auto const gateways = load();
    return std::find(gateways.begin(), gateways.end(), gateway) != gateways.end();
}

void RememberedGateways::add(http::HostPort const& gateway) const {
    auto gateways = load();
    gateways.erase(std::remove(gateways.begin(), gateways.end(), gateway), gateways.end());
    gateways.push_back(gateway);
    if (gateways.size() > most)
        gateways.erase(gateways.begin(), gateways.end() - most);
    try {
        File::replaceAllFile(m_path, textOf(gateways), ownerOnly);
    } catch (EFile const&) {
        complain("add", "Cannot remember " + gateway.host() + " in " + m_path);
    }
}

} // namespace quillon
