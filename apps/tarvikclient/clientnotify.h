// What the client tells the program around it.
#pragma once

#include "base/string.h"

namespace quillon {

class RequestInfo;

/// The client's state.
enum ClientStatus {
    STATUS_IDLE = 1,
    STATUS_DOWNLOADING_COMPENENTS = 2,
    STATUS_CONNECTED = 3,
    STATUS_FINISHED = 4,
    STATUS_HOSTCHECKING = 5
};

/// The kind of work that the gateway asks for.
enum ClientType {
    CLIENT_TYPE_PLUGINDLL = 2,
    CLIENT_TYPE_HOSTCHECKER = 3,
    CLIENT_TYPE_PLUGINDLL_NOTUNNEL = 4
};

/// Receives the client's notifications, all of them on the client thread: an implementation with a screen
/// hands them on to its own thread. It must outlive the client's thread, return soon and throw nothing.
class ITarvikClientNotify {
public:
    /// The gateway could not be reached; the argument describes the failed transfer and is valid for the
    /// call.
    virtual void onConnectError(RequestInfo const& information) = 0;
    /// The session ended on an error. The text is empty: the reason is in the log, and its kind is what the
    /// client's getFailure() says.
    virtual void onFatalError(String const& text) = 0;
    virtual void onStatus(ClientStatus const& status) = 0;
    /// A status line of the tunnel, as the module reported it; the null string when there is none any more.
    virtual void onVpnStatus(String const& status) = 0;
    /// The kind of sub-client that is about to be made.
    virtual void onDispatch(ClientType type) = 0;

protected:
    ~ITarvikClientNotify() = default;
};

} // namespace quillon
