// A request's URL as libcurl reads it.
#pragma once

#include "base/string.h"

#include <memory>

struct Curl_URL;

namespace quillon {

/// Takes a URL apart once, for the transfer and for all who decide about it: a transfer that is given
/// handle() connects to getHost() and reads nothing again. One thread at a time.
class RequestUrl {
public:
    explicit RequestUrl(String const& url);

    /// libcurl's code for why no request can go there; 0 when one can. Besides what libcurl refuses that is
    /// every scheme but "http" and "https" and each text in which http::Uri finds no host or another one than
    /// libcurl: "https:/host/" and "https:///host/", hosts with percent-encoding or letters beyond ASCII, and
    /// addresses that are not written in their usual form.
    int getError() const noexcept { return m_error; }
    // Below: only when there is no error.
    /// libcurl's form of the URL. It belongs to the object.
    Curl_URL* handle() const noexcept { return m_handle.get(); }
    /// In lower case, without port and brackets.
    String const& getHost() const noexcept { return m_host; }
    /// What is asked of the server, without the query and without "." and ".."; at least "/".
    String const& getPath() const noexcept { return m_path; }
    bool isHttps() const noexcept { return m_isHttps; }

private:
    struct Cleanup {
        void operator()(Curl_URL* handle) const;
    };

    int read(String const& url);
    String getPart(int part) const;

    std::unique_ptr<Curl_URL, Cleanup> const m_handle;
    String m_host;
    String m_path;
    bool m_isHttps = false;
    int m_error;
};

} // namespace quillon
