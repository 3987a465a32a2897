#include "tarvikclient/cli/linenotify.h"

#include "base/stringconversion.h"
#include "base/visibletext.h"
#include "curl/requestinfo.h"

#include <cstdio>

namespace quillon::cli {

void LineNotify::print(char const* notification, String const& text) {
    String line(notification);
    if (!text.empty())
        line.append(' ', visibleText(text));
    line.append('\n');
    std::fwrite(line.array(), 1, line.length(), stdout);
    std::fflush(stdout);
    m_wakeups.post(Wakeup::news);
}

void LineNotify::end(Outcome outcome) {
    m_outcome = outcome;
    m_wakeups.post(Wakeup::news);
}

void LineNotify::onConnectError(RequestInfo const& information) {
    print("onConnectError", information.format());
    end(Outcome::connectError);
}

void LineNotify::onFatalError(String const& text) {
    print("onFatalError", text);
    end(Outcome::fatalError);
}

void LineNotify::onStatus(ClientStatus const& status) {
    print("onStatus", toString(static_cast<int>(status)));
    if (status == STATUS_FINISHED)
        end(Outcome::finished);
}

void LineNotify::onVpnStatus(String const& status) {
    print("onVpnStatus", status);
}

void LineNotify::onDispatch(ClientType type) {
    print("onDispatch", toString(static_cast<int>(type)));
}

} // namespace quillon::cli
