#include "http/knownheaders.h"

#include <array>
#include <map>

namespace quillon::http {

namespace {

constexpr char const* names[] = {"Accept-Charset",
                                 "Accept-Encoding",
                                 "Accept-Language",
                                 "Accept-Ranges",
                                 "Access-Control-Request-Method",
                                 "Authorization",
                                 "Cache-Control",
                                 "Connection",
                                 "Content-Disposition",
                                 "Content-Encoding",
                                 "Content-Location",
                                 "Content-Type",
                                 "Date",
                                 "Destination",
                                 "Expires",
                                 "Host",
                                 "If-Modified-Since",
                                 "If-None-Match",
                                 "Last-Modified",
                                 "Location",
                                 "Max-Forwards",
                                 "Pragma",
                                 "Proxy-Authorization",
                                 "Proxy-Connection",
                                 "Referer",
                                 "Refresh",
                                 "Server",
                                 "SOAPAction",
                                 "SSL_CLIENT_S_DN_CN",
                                 "SSL_CLIENT_VERIFY",
                                 "Trailer",
                                 "Transfer-Encoding",
                                 "Upgrade",
                                 "User-Agent",
                                 "Uncompressed-Content-Length",
                                 "Via",
                                 "X-Forwarded-Server",
                                 "X-Forwarded-Host",
                                 "X-Forwarded-For",
                                 "X-Forwarded-Proto",
                                 "X-Tarvik-ConnId",
                                 "X-Tarvik-Gateway",
                                 "X-Tarvik-Hostname",
                                 "X-Tarvik-JSParse",
                                 "X-Tarvik-Orgname",
                                 "X-Tarvik-Protocol",
                                 "X-Tarvik-PreserveHost",
                                 "X-Tarvik-PreserveWWWAuthenticate",
                                 "X-Tarvik-Ticket",
                                 "X-Tarvik-ticket64",
                                 "X-Tarvik-SmbServer",
                                 "X-Tarvik-Syncml",
                                 "X-Tarvik-Service",
                                 "X-MicrosoftAjax",
                                 "Proxy-Authenticate",
                                 "WWW-Authenticate",
                                 "Content-Length",
                                 "Cookie",
                                 "ETag",
                                 "Set-Cookie",
                                 "Set-Cookie2"};

class Table {
public:
    Table() {
        for (std::size_t i = 0; i < m_entries.size(); ++i) {
            String const name = names[i];
            // The one key that is not all lower case.
            m_entries[i] = {name, name == "X-Forwarded-Proto" ? String("x-forwarded-Proto") : name.lower()};
            m_byKey.emplace(m_entries[i].key, &m_entries[i]);
        }
    }

    std::span<KnownHeader const> entries() const { return m_entries; }

    KnownHeader const* find(String const& key) const {
        auto const found = m_byKey.find(key);
        return found == m_byKey.end() ? nullptr : found->second;
    }

private:
    std::array<KnownHeader, std::size(names)> m_entries;
    std::map<String, KnownHeader const*> m_byKey;
};

// Never destroyed: transfers on other threads may outlive static destructors.
Table const& table() {
    static Table const& theTable = *new Table;
    return theTable;
}

} // namespace

std::span<KnownHeader const> knownHeaders() {
    return table().entries();
}

KnownHeader const* findKnownHeader(String const& name) {
    KnownHeader const* const found = table().find(name);
    return found ? found : table().find(name.lower());
}

} // namespace quillon::http
