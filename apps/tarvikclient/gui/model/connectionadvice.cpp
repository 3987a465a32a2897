#include "tarvikclient/gui/model/connectionadvice.h"

#include "tarvikclient/gui/model/strangerstext.h"

#include <wx/intl.h>

namespace quillon {

namespace {

using enum ConnectionFault;

wxString happened(ConnectionFault fault) {
    switch (fault) {
    case nameNotFound:
        return _("HAPPENED_NAME_NOT_FOUND");
    case noRoute:
        return _("HAPPENED_NO_ROUTE");
    case refused:
        return _("HAPPENED_REFUSED");
    case timedOut:
        return _("HAPPENED_TIMED_OUT");
    case brokenOff:
        return _("HAPPENED_BROKEN_OFF");
    case certificateExpired:
        // TRANSLATORS: {name} is whose certificate it is, {date} the last day on which it is valid.
        return _("HAPPENED_CERTIFICATE_EXPIRED");
    case certificateNotYetValid:
        // TRANSLATORS: {name} is whose certificate it is, {first} and {date} its first and its last day.
        return _("HAPPENED_CERTIFICATE_NOT_YET_VALID");
    case certificateOfAnother:
        // TRANSLATORS: {name} is whose certificate it is, {date} its last day.
        return _("HAPPENED_CERTIFICATE_OF_ANOTHER");
    case certificateOfUnknownIssuer:
        // TRANSLATORS: {name} is whose certificate it is, {issuer} who has issued it, {date} its last day.
        return _("HAPPENED_CERTIFICATE_UNKNOWN_ISSUER");
    case certificateSelfSigned:
        // TRANSLATORS: {name} is whose certificate it is, {date} its last day.
        return _("HAPPENED_CERTIFICATE_SELF_SIGNED");
    case certificateRevoked:
        // TRANSLATORS: {name} is whose certificate it is, {date} its last day.
        return _("HAPPENED_CERTIFICATE_REVOKED");
    case certificateBad:
        // TRANSLATORS: {name} is whose certificate it is, {date} its last day.
        return _("HAPPENED_CERTIFICATE_BAD");
    case certificateUnknown:
        return _("HAPPENED_CERTIFICATE_UNKNOWN");
    case noTrustList:
        return _("HAPPENED_NO_TRUST_LIST");
    case notSecure:
        return _("HAPPENED_NOT_SECURE");
    case proxyNotFound:
        return _("HAPPENED_PROXY_NOT_FOUND");
    case proxyUnusable:
        return _("HAPPENED_PROXY_UNUSABLE");
    case proxyLogin:
        return _("HAPPENED_PROXY_LOGIN");
    case proxyRefuses:
        // TRANSLATORS: {status} is a number.
        return _("HAPPENED_PROXY_REFUSES");
    case proxyCertificate:
        return _("HAPPENED_PROXY_CERTIFICATE");
    case httpError:
        // TRANSLATORS: {status} is a number.
        return _("HAPPENED_HTTP_ERROR");
    case notUnderstood:
        return _("HAPPENED_NOT_UNDERSTOOD");
    case other:
        break;
    }
    return _("HAPPENED_OTHER");
}

wxString whatToDo(ConnectionFault fault) {
    switch (fault) {
    case nameNotFound:
        return _("TODO_NAME_NOT_FOUND");
    case noRoute:
    case timedOut:
    case brokenOff:
        return _("TODO_INTERNET");
    case certificateExpired:
    case certificateNotYetValid:
        // TRANSLATORS: {today} is the date on this computer.
        return _("TODO_CERTIFICATE_DATE");
    case certificateOfAnother:
    case certificateOfUnknownIssuer:
    case certificateSelfSigned:
    case certificateRevoked:
    case certificateBad:
    case certificateUnknown:
        return _("TODO_CERTIFICATE");
    case proxyNotFound:
    case proxyUnusable:
        return _("TODO_PROXY");
    case proxyLogin:
        return _("TODO_PROXY_LOGIN");
    default:
        return _("TODO_TELL");
    }
}

/// The certificate without a name of its own is the gateway's as far as anybody knows.
wxString nameOr(String const& name, wxString const& gateway) {
    wxString const shown = strangersText(name);
    return shown.empty() ? gateway : shown;
}

} // namespace

wxString dayOf(std::time_t time) {
    std::tm day{};
    if (!localtime_r(&time, &day))
        return wxString();
    // TRANSLATORS: a date; {day} and {month} have two digits.
    return filledIn(_("DATE"), {{"{day}", wxString::Format("%02d", day.tm_mday)},
                                {"{month}", wxString::Format("%02d", day.tm_mon + 1)},
                                {"{year}", wxString::Format("%d", day.tm_year + 1900)}});
}

wxString gatewayInText(wxString const& gateway) {
    wxString const shown = strangersText(gateway);
    // TRANSLATORS: stands for the gateway's name where that is not known.
    return shown.empty() ? _("THE_GATEWAY") : shown;
}

ConnectionAdvice adviceOn(ConnectionError const& error, ConnectionPlace const& place) {
    wxString const gateway = gatewayInText(place.gateway);
    CertificateFacts const certificate = error.certificate.value_or(CertificateFacts());
    auto const fill = [&](wxString const& sentence) {
        return filledIn(sentence, {{"{gateway}", gateway},
                                   {"{name}", nameOr(certificate.subject, gateway)},
                                   {"{issuer}", nameOr(certificate.issuer, "?")},
                                   {"{first}", dayOf(certificate.notBefore)},
                                   {"{date}", dayOf(certificate.notAfter)},
                                   {"{today}", dayOf(place.now)},
                                   {"{status}", wxString::Format("%u", error.status)}});
    };
    ConnectionAdvice advice{fill(happened(error.fault)), fill(whatToDo(error.fault))};
    if (error.isOfGatewaysCertificate() && place.allowsException)
        // TRANSLATORS: follows TODO_CERTIFICATE or TODO_CERTIFICATE_DATE.
        advice.whatToDo += " " + _("TODO_CERTIFICATE_EXCEPTION");
    return advice;
}

} // namespace quillon
