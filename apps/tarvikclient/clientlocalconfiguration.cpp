#include "tarvikclient/clientlocalconfiguration.h"

#include "base/confhelper.h"
#include "base/failure.h"
#include "base/file.h"
#include "base/stringwriter.h"
#include "xml/parserreader.h"
#include "xml/writerkeywriter.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace quillon {

namespace {

constexpr char rootName[] = "tarvikclient";

/// What the user had entered may still be wanted by somebody who can read it. A second name first: it needs
/// no reading, and the file keeps its place until the new one takes it.
void keepBroken(String const& path) {
    String const broken = path + ClientLocalConfiguration::brokenSuffix;
    unlink(broken.str());
    if (link(path.str(), broken.str()) != 0 && errno != ENOENT)
        File::copy(path, broken);
}

} // namespace

void ProtectedCredentials::write(IKeyReader& reader) {
    String login, password, domain;
    ConfReadHelper::readKey(reader, "login", login, ConfReadHelper::required);
    ConfReadHelper::readKey(reader, "password", password, ConfReadHelper::required);
    m_credentials.setLogin(login);
    m_credentials.setPassword(password);
    if (ConfReadHelper::readKey(reader, "domain", domain, ConfReadHelper::optional))
        m_credentials.setDomain(domain);
}

void ProtectedCredentials::read(IKeyWriter& writer) const {
    m_credentials.read(writer);
}

void ClientLocalConfiguration::readFromFile(String const& path) {
    m_unreadable = true; // until it has been read
    try {
        xml::ParserReader document(path, xml::Disclosure::lines);
        write(document[rootName]);
        m_unreadable = false;
    } catch (xml::EParserReader const&) {
        log(ERROR, "ClientLocalConfiguration", "readFromFile",
            "Can not read local configuration from " + path);
    }
}

void ClientLocalConfiguration::save(String const& path) {
    try {
        if (m_unreadable)
            keepBroken(path);
        File::replaceAllFile(path, toXml());
        m_unreadable = false;
    } catch (EFile const&) {
        fail<EFile>("ClientLocalConfiguration", "save", "Can not write local configuration to " + path);
    }
}

String ClientLocalConfiguration::toXml() const {
    String text;
    StringWriter output(text);
    xml::WriterKeyWriter writer(output);
    writer[rootName].write(*this);
    writer.clear();
    return text;
}

bool ClientLocalConfiguration::survivesSaving() const {
    try {
        auto document = xml::ParserReader::fromText(toXml(), xml::Disclosure::lines);
        ClientLocalConfiguration saved;
        saved.write(document[rootName]);
        return equals(saved);
    } catch (Exception const&) { // logged where it was thrown
        return false;
    }
}

bool ClientLocalConfiguration::equals(ClientLocalConfiguration const& other) const {
    List<String> const mine = getSslCertIgnoreDomains();
    List<String> const theirs = other.getSslCertIgnoreDomains();
    return std::equal(mine.begin(), mine.end(), theirs.begin(), theirs.end()) &&
           getProxyCredentials() == other.getProxyCredentials();
}

List<String> ClientLocalConfiguration::getSslCertIgnoreDomains() const {
    TSynchronize<Mutex> lock(m_mutex);
    return m_ignoredDomains;
}

void ClientLocalConfiguration::setSslCertIgnoreDomains(List<String> const& domains) {
    TSynchronize<Mutex> lock(m_mutex);
    m_ignoredDomains.clear();
    for (String const& domain : domains)
        m_ignoredDomains.add(domain.owned());
}

bool ClientLocalConfiguration::isSslCertIgnored(String const& authority) const {
    TSynchronize<Mutex> lock(m_mutex);
    return std::find(m_ignoredDomains.begin(), m_ignoredDomains.end(), authority) != m_ignoredDomains.end();
}

Credentials ClientLocalConfiguration::getProxyCredentials() const {
    TSynchronize<Mutex> lock(m_mutex);
    return m_proxyCredentials;
}

void ClientLocalConfiguration::setProxyCredentials(Credentials const& credentials) {
    TSynchronize<Mutex> lock(m_mutex);
    m_proxyCredentials = credentials;
}

void ClientLocalConfiguration::write(IKeyReader& reader) {
    TSynchronize<Mutex> lock(m_mutex);
    ConfReadHelper::readKey(reader, "sslcertignoredomains", m_ignoredDomains, ConfReadHelper::optional);
    ConfReadHelper const proxy = ConfReadHelper(reader).get("proxy", ConfReadHelper::optional);
    if (!proxy.missing())
        ConfReadHelper::readKey(proxy.reader(), "credentials", m_proxyCredentials, ConfReadHelper::optional);
}

void ClientLocalConfiguration::read(IKeyWriter& writer) const {
    TSynchronize<Mutex> lock(m_mutex);
    writer["sslcertignoredomains"].write(m_ignoredDomains);
    writer["proxy"]["credentials"].write(m_proxyCredentials);
}

void ClientLocalConfiguration::write(IReader&) {
    failQuietly<ENotImplemented>();
}

void ClientLocalConfiguration::read(IWriter&) const {
    failQuietly<ENotImplemented>();
}

} // namespace quillon
