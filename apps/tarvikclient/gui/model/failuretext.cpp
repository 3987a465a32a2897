#include "tarvikclient/gui/model/failuretext.h"

#include "base/confhelper.h"
#include "base/file.h"
#include "tarvikclient/client.h"
#include "tarvikclient/gui/model/connectionadvice.h"
#include "tarvikclient/gui/model/strangerstext.h"

#include <wx/intl.h>

namespace quillon {

namespace {

constexpr std::size_t longestWords = 300;

wxString happened(FailureKind kind) {
    switch (kind) {
    case FailureKind::badLink:
        return _("FATAL_BAD_LINK");
    case FailureKind::policy:
    case FailureKind::notAgreed:
        return _("FATAL_POLICY");
    case FailureKind::gatewayError:
        return _("HAPPENED_HTTP_ERROR");
    case FailureKind::replyNotUnderstood:
        return _("FATAL_REPLY_NOT_UNDERSTOOD");
    case FailureKind::refusedByGateway:
        return _("FATAL_REFUSED");
    case FailureKind::moduleNotFetched:
        return _("FATAL_NOT_FETCHED");
    case FailureKind::badSignature:
        return _("FATAL_SIGNATURE");
    case FailureKind::moduleNotLoadable:
        return _("FATAL_NOT_LOADABLE");
    case FailureKind::none:
    case FailureKind::other:
        break;
    }
    return _("FATAL_OTHER");
}

wxString whatToDo(FailureKind kind) {
    switch (kind) {
    case FailureKind::policy:
    case FailureKind::notAgreed:
    case FailureKind::badSignature:
    case FailureKind::moduleNotLoadable:
        return _("STEP_TELL");
    case FailureKind::moduleNotFetched:
        return _("STEP_FETCH");
    default:
        return _("STEP_LINK");
    }
}

wxString happenedAtStart(std::exception_ptr const& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (EFile const&) {
        return _("START_DIRECTORY");
    } catch (ETarvikClient const&) {
        return _("START_DIRECTORY");
    } catch (EConfMissingKey const&) {
        return _("START_SETTINGS");
    } catch (EKeyReader const&) {
        return _("START_SETTINGS");
    } catch (...) {
        return _("FATAL_OTHER");
    }
}

} // namespace

std::vector<wxString> textsOf(SessionFailure const& failure, wxString const& gateway) {
    std::vector<wxString> texts{
        filledIn(happened(failure.kind), {{"{gateway}", gatewayInText(gateway)},
                                          {"{status}", wxString::Format("%u", failure.httpStatus)}})};
    wxString const words = strangersText(failure.gatewaysWords, longestWords);
    if (!words.empty())
        // TRANSLATORS: {words} is a text that came from the gateway, in whatever language.
        texts.push_back(filledIn(_("FATAL_GATEWAYS_WORDS"), {{"{words}", words}}));
    texts.push_back(whatToDo(failure.kind));
    // TRANSLATORS: names the menu's entry MENU_LOGS.
    texts.push_back(_("STEP_LOG"));
    return texts;
}

std::vector<wxString> textsOfStart(std::exception_ptr const& failure) {
    return {happenedAtStart(failure), _("STEP_TELL")};
}

} // namespace quillon
