// The cookies of one libcurl handle.
#pragma once

#include "base/strings.h"
#include "curl/requesturl.h"
#include "http/setcookie.h"

#include <map>

using CURL = void;

namespace quillon {

/// Reads and changes the cookies that a handle's cookie engine holds. The handle belongs to the caller and
/// outlives the jar; one thread at a time for both.
class CookieJar {
public:
    /// No store grows beyond this, whatever servers set: what comes later is dropped.
    static constexpr unsigned maxCookies = 3000;

    /// Switches the handle's cookie engine on.
    explicit CookieJar(CURL* handle);

    /// Puts a cookie in, in place of one of the same name, domain and path. One without a domain is sent to
    /// every host that is an address. Throws ECurl, after a log line without the value, when libcurl does not
    /// keep the cookie as it is: when name and value have more than 4096 bytes, or some that are not allowed.
    void set(http::SetCookie const& cookie);
    /// Puts in a copy of all cookies of `other`.
    void copyFrom(CookieJar const& other);
    /// The cookies that have a domain and have not expired, as lines in the Netscape file format.
    Strings lines() const;
    /// Carries over what happened to a copy: `before` are its lines when it was made, `after` its lines now.
    /// What was added or replaced is put in; what was removed goes, unless it has been replaced here
    /// meanwhile.
    void merge(Strings const& before, Strings const& after);

    /// The value of the "Cookie" header for a request; empty when there is none to send.
    String headerFor(RequestUrl const& url) const;
    void clear();
    /// Puts back what clear() took. `taken` are the lines() before.
    void restore(Strings const& taken);

private:
    void add(String const& line);
    void addAll(Strings const& lines);
    bool holds(http::SetCookie const& cookie) const;

    CURL* const m_handle;
    // libcurl does not list cookies without a domain: the "Set-Cookie" text of each, by its name.
    std::map<String, http::SetCookie> m_withoutDomain;
};

} // namespace quillon
