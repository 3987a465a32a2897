// MD5 (RFC 1321): tells files apart, proves nothing.
#pragma once

#include "base/digest.h"

#include <memory>

struct MD5state_st;

namespace quillon::tls {

/// A running MD5. After final() it starts anew. One thread at a time.
class MD5 final : public Digest {
public:
    MD5();
    ~MD5() override;

    void update(Memory const& bytes) override;
    /// 16 raw bytes.
    Memory final() override;

private:
    std::unique_ptr<MD5state_st> m_context;
};

} // namespace quillon::tls
