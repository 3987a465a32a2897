// A way round what libcurl does to requests with a long head.
#pragma once

#include "curl/cookiejar.h"

#include "http/responseheader.h"

typedef void CURL;

namespace quillon {

/// For the length of one transfer, makes a handle send a head that may be long in a form that libcurl can
/// send.
///
/// Of libcurl 7.88 and HTTP/1.1: when the head, up to and with the first cookie, would exceed 8190 bytes, the
/// cookie engine writes "Cookie: ", drops the cookie and the line's end with it, so that the head never ends
/// and both sides wait; and over TLS a head of more than twice the upload buffer (64 KB by default) is not
/// sent to its end. So the cookies go by CURLOPT_COOKIE, which has no such limit, while the engine is empty
/// and only collects what the reply sets, and the upload buffer is made larger than any head (libcurl refuses
/// those above 1 MB at once). HTTP/2 is left out: its servers take no head of this size.
class LongHead {
public:
    /// The sum of what makes up the head, in bytes, from which on this is done. Below it the host, the user
    /// info and a proxy's address may stand in the head a second time without reaching 8190.
    static constexpr unsigned threshold = 3000;

    /// Whether a request needs it; `others` counts the bytes of other parts that the caller put into the
    /// head.
    static bool isNeeded(String const& url, unsigned others, CookieJar const& cookies);

    /// All arguments outlive the object. `reply` is the transfer's header and is read at the end.
    LongHead(CURL* handle, String const& url, CookieJar& cookies, http::ResponseHeader const& reply);
    /// Puts the handle back as it was and the cookies into its engine.
    ~LongHead();
    LongHead(LongHead const&) = delete;
    LongHead& operator=(LongHead const&) = delete;

private:
    CURL* const m_handle;
    CookieJar& m_cookies;
    http::ResponseHeader const& m_reply;
    Strings const m_taken;
};

} // namespace quillon
