#include "tarvikclient/gui/model/connectionerror.h"

#include "curl/requestinfo.h"

#include <cerrno>

namespace quillon {

namespace {

using enum ConnectionFault;

constexpr unsigned proxyWantsLogin = 407;
constexpr unsigned firstErrorStatus = 400;

/// libcurl's result codes (CURLE_...), whose numbers never change.
enum CurlCode {
    unsupportedProtocol = 1,
    proxyNotResolved = 5,
    hostNotResolved = 6,
    notConnected = 7,
    strangeReply = 8,
    http2 = 16,
    partialFile = 18,
    replyTooLong = 23, // what takes the reply has refused to take more
    timeOut = 28,
    tlsFailed = 35,
    gotNothing = 52,
    sendError = 55,
    receiveError = 56,
    badClientCertificate = 58,
    badCipher = 59,
    notVerified = 60,
    badEncoding = 61,
    tooLarge = 63,
    badTrustFile = 77,
    badRevocationList = 82,
    wrongIssuer = 83,
    badStatus = 91,
    http2Stream = 92,
    proxyFailed = 97
};

/// OpenSSL's verdicts (X509_V_ERR_...).
enum Verdict {
    accepted = 0,
    noIssuer = 2,
    notYetValid = 9,
    expired = 10,
    selfSignedPeer = 18,
    selfSignedInChain = 19,
    noLocalIssuer = 20,
    firstNotVerified = 21,
    revoked = 23,
    untrusted = 27
};

ConnectionFault faultOfVerdict(int verdict) {
    switch (verdict) {
    case accepted:
        return certificateOfAnother; // the name alone is checked by libcurl itself
    case expired:
        return certificateExpired;
    case notYetValid:
        return certificateNotYetValid;
    case selfSignedPeer:
        return certificateSelfSigned;
    case selfSignedInChain:
    case noIssuer:
    case noLocalIssuer:
    case firstNotVerified:
    case untrusted:
        return certificateOfUnknownIssuer;
    case revoked:
        return certificateRevoked;
    default:
        return certificateBad;
    }
}

ConnectionFault faultOfSystemError(int error) {
    switch (error) {
    case ENETUNREACH:
    case EHOSTUNREACH:
    case ENETDOWN:
    case EHOSTDOWN:
    case EADDRNOTAVAIL:
    case EACCES: // a firewall's answer
    case EPERM:
        return noRoute;
    case ETIMEDOUT:
        return timedOut;
    case ECONNREFUSED:
        return refused;
    default:
        return other;
    }
}

ConnectionError certificateError(TransferFacts const& facts) {
    if (facts.proxyRefused)
        return {proxyCertificate};
    if (!facts.certificate)
        return {certificateUnknown};
    return {faultOfVerdict(facts.certificate->verdict), 0, facts.certificate};
}

ConnectionFault faultOfCode(int code, TransferFacts const& facts) {
    switch (code) {
    case hostNotResolved:
        return nameNotFound;
    case proxyNotResolved:
        return proxyNotFound;
    case notConnected:
        return facts.atProxy ? proxyUnusable : faultOfSystemError(facts.systemError);
    case timeOut:
        return facts.atProxy ? proxyUnusable : timedOut;
    case proxyFailed:
        return proxyUnusable;
    case badTrustFile:
    case badRevocationList:
        return noTrustList;
    case tlsFailed:
    case badClientCertificate:
    case badCipher:
    case wrongIssuer:
    case badStatus:
        return notSecure;
    case partialFile:
    case gotNothing:
    case sendError:
    case receiveError:
        return brokenOff;
    case unsupportedProtocol: // HTTP/0.9, that is: no HTTP
    case strangeReply:
    case http2:
    case http2Stream:
    case replyTooLong:
    case badEncoding:
    case tooLarge:
        return notUnderstood;
    default:
        return other;
    }
}

/// 0 where no reply began, or no reply of HTTP.
unsigned statusOf(http::ResponseHeader const& header) {
    try {
        return header.getStatusLine().empty() ? 0 : header.getResponseCode();
    } catch (http::EBadHeader const&) {
        return 0;
    }
}

} // namespace

ConnectionError connectionErrorOf(RequestInfo const& information) {
    TransferFacts const& facts = information.getFacts();
    if (facts.proxyStatus >= firstErrorStatus)
        return {facts.proxyStatus == proxyWantsLogin ? proxyLogin : proxyRefuses, facts.proxyStatus};
    if (information.getCode() == notVerified)
        return certificateError(facts);
    unsigned const status = statusOf(information.getResponseHeader());
    if (status >= firstErrorStatus)
        return {httpError, status};
    return {faultOfCode(information.getCode(), facts)};
}

} // namespace quillon
