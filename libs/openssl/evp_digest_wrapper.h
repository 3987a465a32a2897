// Message digests by name.
#pragma once

#include "base/digest.h"

#include <memory>

struct evp_md_ctx_st;
struct evp_md_st;

namespace quillon::tls {

/// A digest that OpenSSL does not know or cannot compute.
class EEVPDigest : public Exception {
    using Exception::Exception;
};

/// A running digest of any kind that OpenSSL knows. After final() it starts anew. One thread at a time.
class EVPDigest final : public Digest {
public:
    /// Throws EEVPDigest when `kind` is null or refused.
    explicit EVPDigest(evp_md_st const* kind);
    /// `name` is OpenSSL's, "sha256" for instance; an unknown one throws EEVPDigest.
    explicit EVPDigest(String const& name);
    explicit EVPDigest(char const* name) : EVPDigest(String(name)) {}
    ~EVPDigest() override = default;

    /// Throws EEVPDigest when OpenSSL refuses.
    void update(Memory const& bytes) override;
    Memory final() override;

private:
    struct Free {
        void operator()(evp_md_ctx_st* context) const noexcept;
    };

    static evp_md_st const* initByName(String const& name);
    void start();

    evp_md_st const* m_kind;
    std::unique_ptr<evp_md_ctx_st, Free> m_context;
};

} // namespace quillon::tls
