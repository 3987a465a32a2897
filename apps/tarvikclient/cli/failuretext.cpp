#include "tarvikclient/cli/failuretext.h"

#include "base/stringconversion.h"
#include "base/visibletext.h"

namespace quillon::cli {

namespace {

char const* reasonOf(FailureKind kind) {
    switch (kind) {
    case FailureKind::badLink:
        return "the link names no gateway; open it in the portal again";
    case FailureKind::policy:
        return "the administrator's policy does not allow this session; tarvikclient-cli --policy shows it";
    case FailureKind::notAgreed:
        return "the policy asks about this gateway; tarvikclient-cli --yes agrees to it";
    case FailureKind::gatewayError:
        return "the gateway answered with an error; open the link in the portal again later";
    case FailureKind::replyNotUnderstood:
        return "the gateway's reply was not understood; open the link in the portal again";
    case FailureKind::refusedByGateway:
        return "the gateway refused the session; open the link in the portal again";
    case FailureKind::moduleNotFetched:
        return "a module could not be fetched or stored; open the link in the portal again";
    case FailureKind::badSignature:
        return "a module was refused because of its signature; tell your administrator";
    case FailureKind::moduleNotLoadable:
        return "a module could not be loaded, or failed; tell your administrator";
    case FailureKind::none:
    case FailureKind::other:
        break;
    }
    return "the session failed; the log says more";
}

} // namespace

String describe(SessionFailure const& failure) {
    String text(reasonOf(failure.kind));
    if (failure.httpStatus != 0)
        text.append(" (HTTP ", toString(failure.httpStatus), ")");
    if (!failure.gatewaysWords.empty())
        text.append("; its own words: \"", visibleText(failure.gatewaysWords), "\"");
    return text;
}

} // namespace quillon::cli
