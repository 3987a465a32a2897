#include "openssl/verificationnote.h"

#include "base/visibletext.h"
#include "openssl/errorqueue.h"

#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <memory>

namespace quillon::tls {

namespace {

String textOf(ASN1_STRING const* value) {
    unsigned char* utf8 = nullptr;
    int const length = value ? ASN1_STRING_to_UTF8(&utf8, value) : -1;
    if (length < 0)
        return String();
    String const text = String::copyOf({reinterpret_cast<char const*>(utf8), std::size_t(length)});
    OPENSSL_free(utf8);
    return cutText(text, CertificateFacts::longestName);
}

String entryOf(X509_NAME const* name, int kind) {
    int const index = name ? X509_NAME_get_index_by_NID(name, kind, -1) : -1;
    return index < 0 ? String() : textOf(X509_NAME_ENTRY_get_data(X509_NAME_get_entry(name, index)));
}

/// What a person would call the one that a name stands for.
String nameOf(X509_NAME const* name) {
    String const common = entryOf(name, NID_commonName);
    return common.empty() ? entryOf(name, NID_organizationName) : common;
}

/// Newer certificates of servers name them in this extension alone.
String firstHostOf(X509 const* certificate) {
    std::unique_ptr<GENERAL_NAMES, void (*)(GENERAL_NAMES*)> const names(
        static_cast<GENERAL_NAMES*>(X509_get_ext_d2i(certificate, NID_subject_alt_name, nullptr, nullptr)),
        &GENERAL_NAMES_free);
    for (int i = 0; names && i < sk_GENERAL_NAME_num(names.get()); ++i) {
        GENERAL_NAME const* const name = sk_GENERAL_NAME_value(names.get(), i);
        if (name->type == GEN_DNS)
            return textOf(name->d.dNSName);
    }
    return String();
}

std::time_t secondsOf(ASN1_TIME const* time) {
    std::tm utc{};
    return time && ASN1_TIME_to_tm(time, &utc) == 1 ? timegm(&utc) : 0;
}

CertificateFacts factsOf(X509 const* certificate, int verdict) {
    CertificateFacts facts;
    facts.verdict = verdict;
    if (!certificate)
        return facts;
    facts.subject = nameOf(X509_get_subject_name(certificate));
    if (facts.subject.empty())
        facts.subject = firstHostOf(certificate);
    facts.issuer = nameOf(X509_get_issuer_name(certificate));
    facts.notBefore = secondsOf(X509_get0_notBefore(certificate));
    facts.notAfter = secondsOf(X509_get0_notAfter(certificate));
    return facts;
}

/// In place of X509_verify_cert(), which it calls and whose answer it gives.
int verifyAndNote(X509_STORE_CTX* chain, void* note) noexcept {
    int const accepted = X509_verify_cert(chain);
    try {
        ErrorQueueGuard const guard; // TLS reports what the verification has put there, and no more
        *static_cast<std::optional<CertificateFacts>*>(note) =
            factsOf(accepted > 0 ? X509_STORE_CTX_get0_cert(chain) : X509_STORE_CTX_get_current_cert(chain),
                    X509_STORE_CTX_get_error(chain));
    } catch (...) {
        // It is a note, and the connection goes on without.
    }
    return accepted;
}

} // namespace

bool isThisLibrary(String const& library) {
    String const version = OpenSSL_version(OPENSSL_VERSION); // "OpenSSL 3.0.19 1 Jan 2026"
    return library == version.left(' ') + "/" + version.right(' ').left(' ');
}

void noteVerification(void* context, std::optional<CertificateFacts>& note) noexcept {
    SSL_CTX_set_cert_verify_callback(static_cast<SSL_CTX*>(context), &verifyAndNote, &note);
}

} // namespace quillon::tls
