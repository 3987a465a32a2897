#include "tarvikclient/gui/model/connectionadvice.h"

#include "tarvikclient/gui/model/strangerstext.h"

#include <wx/intl.h>

namespace quillon {

namespace {

using enum ConnectionFault;

struct Happened {
    ConnectionFault fault;
    char const* key;
};

constexpr Happened whatHappened[] = {
    {nameNotFound, wxTRANSLATE("HAPPENED_NAME_NOT_FOUND")},
    {noRoute, wxTRANSLATE("HAPPENED_NO_ROUTE")},
    {refused, wxTRANSLATE("HAPPENED_REFUSED")},
    {timedOut, wxTRANSLATE("HAPPENED_TIMED_OUT")},
    {brokenOff, wxTRANSLATE("HAPPENED_BROKEN_OFF")},
    // TRANSLATORS: {name} is whose certificate it is, {date} the last day on which it is valid.
    {certificateExpired, wxTRANSLATE("HAPPENED_CERTIFICATE_EXPIRED")},
    // TRANSLATORS: {name} is whose certificate it is, {first} and {date} its first and its last day.
    {certificateNotYetValid, wxTRANSLATE("HAPPENED_CERTIFICATE_NOT_YET_VALID")},
    // TRANSLATORS: {name} is whose certificate it is, {date} its last day.
    {certificateOfAnother, wxTRANSLATE("HAPPENED_CERTIFICATE_OF_ANOTHER")},
    // TRANSLATORS: {name} is whose certificate it is, {issuer} who has issued it, {date} its last day.
    {certificateOfUnknownIssuer, wxTRANSLATE("HAPPENED_CERTIFICATE_UNKNOWN_ISSUER")},
    // TRANSLATORS: {name} is whose certificate it is, {date} its last day.
    {certificateSelfSigned, wxTRANSLATE("HAPPENED_CERTIFICATE_SELF_SIGNED")},
    // TRANSLATORS: {name} is whose certificate it is, {date} its last day.
    {certificateRevoked, wxTRANSLATE("HAPPENED_CERTIFICATE_REVOKED")},
    // TRANSLATORS: {name} is whose certificate it is, {date} its last day.
    {certificateBad, wxTRANSLATE("HAPPENED_CERTIFICATE_BAD")},
    {certificateUnknown, wxTRANSLATE("HAPPENED_CERTIFICATE_UNKNOWN")},
    {noTrustList, wxTRANSLATE("HAPPENED_NO_TRUST_LIST")},
    {notSecure, wxTRANSLATE("HAPPENED_NOT_SECURE")},
    {proxyNotFound, wxTRANSLATE("HAPPENED_PROXY_NOT_FOUND")},
    {proxyUnusable, wxTRANSLATE("HAPPENED_PROXY_UNUSABLE")},
    {proxyLogin, wxTRANSLATE("HAPPENED_PROXY_LOGIN")},
    // TRANSLATORS: {status} is a number.
    {proxyRefuses, wxTRANSLATE("HAPPENED_PROXY_REFUSES")},
    {proxyCertificate, wxTRANSLATE("HAPPENED_PROXY_CERTIFICATE")},
    // TRANSLATORS: {status} is a number.
    {httpError, wxTRANSLATE("HAPPENED_HTTP_ERROR")},
    {notUnderstood, wxTRANSLATE("HAPPENED_NOT_UNDERSTOOD")},
};

wxString happened(ConnectionFault fault) {
    for (Happened const& known : whatHappened)
        if (known.fault == fault)
            return wxGetTranslation(known.key);
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
