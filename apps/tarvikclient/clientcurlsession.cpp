#include "tarvikclient/clientcurlsession.h"

#include "base/failure.h"
#include "http/loggableuri.h"
#include "http/uri.h"
#include "openssl/verificationnote.h"
#include "tarvikclient/policyfile.h"

namespace quillon {

TarvikClientCurlSession::TarvikClientCurlSession(ClientLocalConfiguration const& settings)
    : m_settings(settings) {
    if (tls::isThisLibrary(CurlEasyWrapper::tlsLibrary()))
        setTlsObserver(&tls::noteVerification);
}

void TarvikClientCurlSession::setPolicy(std::shared_ptr<Policy const> const& policy) {
    TSynchronize<Mutex> lock(m_policyMutex);
    m_policy = policy;
}

std::shared_ptr<Policy const> TarvikClientCurlSession::policy() const {
    TSynchronize<Mutex> lock(m_policyMutex);
    return m_policy;
}

bool TarvikClientCurlSession::verifySSL(String const& url) {
    auto const inForce = policy();
    if (!inForce->allowsRequest(url))
        fail<EPolicy>("TarvikClientCurlSession", "verifySSL", "The policy refuses " + http::loggableUri(url));
    return !inForce->allowsCertificateExceptions() ||
           !m_settings.isSslCertIgnored(http::Uri::parse(url, true).getAuthority());
}

Proxy TarvikClientCurlSession::getProxy(String const&) {
    Proxy proxy;
    proxy.getCredentials() = m_settings.getProxyCredentials();
    return proxy;
}

} // namespace quillon
