#include "openssl/md5_wrapper.h"

#include <openssl/md5.h>

namespace quillon::tls {

MD5::MD5() : m_context(std::make_unique<MD5state_st>()) {
    MD5_Init(m_context.get());
}

MD5::~MD5() = default;

void MD5::update(Memory const& bytes) {
    MD5_Update(m_context.get(), bytes.array(), bytes.size());
}

Memory MD5::final() {
    unsigned char digest[MD5_DIGEST_LENGTH];
    MD5_Final(digest, m_context.get());
    MD5_Init(m_context.get());
    return Memory(digest, sizeof digest);
}

} // namespace quillon::tls
