// A way round what libcurl does to requests with a long head.
#pragma once

#include "base/strings.h"
#include "curl/cookiejar.h"

using CURL = void;

namespace quillon {

/// For the length of one transfer, makes a handle send a head that may be long in a form that libcurl can
/// send.
///
/// Of libcurl 7.88 and HTTP/1.1: when the head, up to and with the first cookie, would exceed 8190 bytes, the
/// cookie engine writes "Cookie: ", drops the cookie and the line's end with it, so that the head never ends
/// and both sides wait; and over TLS a head of more than twice the upload buffer (64 KB by default) is not
/// sent to its end. So the cookies go by CURLOPT_COOKIE, which has no such limit, and the upload buffer is
/// made larger than any head (libcurl refuses those above 1 MB at once). While a request is made the engine
/// is empty; while a reply's header comes it holds everything again, so that what the reply does to the
/// cookies is libcurl's business alone. HTTP/2 is left out: its servers take no head of this size.
class LongHead {
public:
    /// The sum of what makes up the head, in bytes, from which on this is done. Below it the host, the user
    /// info and a proxy's address may stand in the head a second time without reaching 8190.
    static constexpr unsigned threshold = 3000;

    /// Whether a request needs it; `others` counts the bytes of other parts that the caller put into the
    /// head.
    static bool isNeeded(unsigned urlLength, unsigned others, CookieJar const& cookies);

    /// All arguments outlive the object.
    LongHead(CURL* handle, RequestUrl const& url, CookieJar& cookies);
    /// Puts the handle back as it was and the cookies into its engine.
    ~LongHead();
    LongHead(LongHead const&) = delete;
    LongHead& operator=(LongHead const&) = delete;

    /// To be called for each status line: the engine gets its cookies.
    void replyBegins();
    /// To be called for the line that ends a header behind which the transfer may make a second request, as
    /// it does for a proxy that asks who it is. That request sends what the engine now holds.
    void replyEnds();

private:
    void takeCookies();

    CURL* const m_handle;
    RequestUrl const& m_url;
    CookieJar& m_cookies;
    bool m_isTaken = false;
    Strings m_taken;
};

} // namespace quillon
