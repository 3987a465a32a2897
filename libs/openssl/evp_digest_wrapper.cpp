#include "openssl/evp_digest_wrapper.h"

#include "base/failure.h"
#include "openssl/errorqueue.h"

#include <openssl/evp.h>

namespace quillon::tls {

namespace {

void require(bool done, char const* method, Place place = std::source_location::current()) {
    if (!done)
        fail<EEVPDigest>("EVPDigest", method, "the digest cannot be computed", place);
}

} // namespace

void EVPDigest::Free::operator()(evp_md_ctx_st* context) const noexcept {
    EVP_MD_CTX_free(context);
}

EVPDigest::EVPDigest(evp_md_st const* kind) : m_kind(kind), m_context(EVP_MD_CTX_new()) {
    start();
}

EVPDigest::EVPDigest(String const& name) : EVPDigest(initByName(name)) {}

evp_md_st const* EVPDigest::initByName(String const& name) {
    evp_md_st const* const kind = EVP_get_digestbyname(name.str());
    if (!kind)
        fail<EEVPDigest>("EVPDigest", "initByName", "Cannot retrive digest \"" + name + "\".",
                         {"libs/openssl/evp_digest_wrapper.cpp", 30});
    return kind;
}

void EVPDigest::start() {
    ErrorQueueGuard const guard;
    require(m_kind && m_context && EVP_DigestInit_ex(m_context.get(), m_kind, nullptr) == 1, "init");
}

void EVPDigest::update(Memory const& bytes) {
    ErrorQueueGuard const guard;
    require(EVP_DigestUpdate(m_context.get(), bytes.array(), bytes.size()) == 1, "update");
}

Memory EVPDigest::final() {
    ErrorQueueGuard const guard;
    unsigned length = 0;
    unsigned char bytes[EVP_MAX_MD_SIZE];
    require(EVP_DigestFinal_ex(m_context.get(), bytes, &length) == 1, "final");
    start();
    return Memory(bytes, length);
}

} // namespace quillon::tls
