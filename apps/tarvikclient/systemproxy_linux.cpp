#include "tarvikclient/systemproxy.h"

#include "base/deadline.h"
#include "base/log.h"
#include "tarvikclient/gobjectpointer_linux.h"

#include <gio/gio.h>

#include <algorithm>
#include <future>
#include <memory>
#include <thread>

namespace quillon::native {

namespace {

using Cancellable = GObjectPointer<GCancellable>;

void logError(String const& text) {
    log(ERROR, "SystemProxy", "systemProxies", text);
}

Strings lookUp(String const& url, GCancellable* cancellable) {
    GError* failure = nullptr;
    gchar** const found =
        g_proxy_resolver_lookup(g_proxy_resolver_get_default(), url.str(), cancellable, &failure);
    std::unique_ptr<gchar*, decltype(&g_strfreev)> const names(found, &g_strfreev);
    std::unique_ptr<GError, decltype(&g_error_free)> const error(failure, &g_error_free);
    if (error)
        logError(String::copyOf(error->message));
    Strings proxies;
    for (gchar* const* name = found; name && *name; ++name)
        proxies.add(String::copyOf(*name));
    return proxies;
}

/// The lookup on a thread of its own: a script that the desktop runs for it may not come back, and the first
/// one waits for the session bus.
std::future<Strings> begin(String const& url, Cancellable const& cancellable) {
    std::promise<Strings> promise;
    std::future<Strings> result = promise.get_future();
    Cancellable mine(G_CANCELLABLE(g_object_ref(cancellable.get())));
    std::thread([url = url.clone(), mine = std::move(mine), promise = std::move(promise)]() mutable {
        try {
            promise.set_value(lookUp(url, mine.get()));
        } catch (...) {
            promise.set_exception(std::current_exception());
        }
    }).detach();
    return result;
}

} // namespace

Strings systemProxies(String const& url, std::function<bool()> const& isCancelled,
                      std::chrono::milliseconds patience) {
    constexpr std::chrono::milliseconds longestPause{100};
    try {
        Deadline const deadline(patience);
        Cancellable const cancellable(g_cancellable_new());
        std::future<Strings> result = begin(url, cancellable);
        std::chrono::milliseconds pause{1};
        while (result.wait_for(pause) != std::future_status::ready) {
            pause = std::min(2 * pause, longestPause);
            if (!isCancelled() && !deadline.hasPassed())
                continue;
            g_cancellable_cancel(cancellable.get());
            logError("the desktop has not named a proxy in time");
            return {};
        }
        return result.get();
    } catch (std::exception const& e) { // no thread, for instance
        logError(e.what());
        return {};
    }
}

} // namespace quillon::native
