#include "base/gcobject.h"

#include "base/exception.h"

namespace quillon::gc {

bool Object::gcAddRef(bool onlyIfAlive) const noexcept {
    unsigned references = m_references.load(std::memory_order_relaxed);
    do {
        if (onlyIfAlive && references == 0)
            return false;
    } while (!m_references.compare_exchange_weak(references, references + 1, std::memory_order_acq_rel,
                                                 std::memory_order_relaxed));
    return true;
}

void Object::throwIfNull(Object const* object) {
    if (!object)
        throw NullException("quillon::NullException", "libs/base/gcobject.cpp", __LINE__);
}

} // namespace quillon::gc
