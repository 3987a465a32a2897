#include "tarvikclient/clientcurlsession.h"

#include "http/uri.h"

namespace quillon {

bool TarvikClientCurlSession::verifySSL(String const& url) {
    return !m_settings.isSslCertIgnored(http::Uri::parse(url, true).getAuthority());
}

Proxy TarvikClientCurlSession::getProxy(String const&) {
    Proxy proxy;
    proxy.getCredentials() = m_settings.getProxyCredentials();
    return proxy;
}

} // namespace quillon
