#include "zlib/utf8locale.h"

namespace quillon::zlib {

Utf8Locale::Utf8Locale() {
    // The names of glibc and of macOS. Without either, names beyond ASCII are refused as unreadable.
    for (char const* const name : {"C.UTF-8", "UTF-8"})
        if (!m_mine)
            m_mine = newlocale(LC_CTYPE_MASK, name, nullptr);
    if (m_mine)
        m_before = uselocale(m_mine);
}

Utf8Locale::~Utf8Locale() {
    if (!m_mine)
        return;
    uselocale(m_before);
    freelocale(m_mine);
}

} // namespace quillon::zlib
