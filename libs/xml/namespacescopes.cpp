#include "xml/namespacescopes.h"

namespace quillon::xml {

void NamespaceScopes::closeElement() {
    for (; !m_undos.empty() && m_undos.back().depth == m_depth; m_undos.pop_back()) {
        Undo const& undo = m_undos.back();
        if (undo.before == 0)
            m_depths.erase(undo.prefix);
        else
            m_depths[undo.prefix] = undo.before;
    }
    --m_depth;
}

bool NamespaceScopes::declare(String const& prefix) {
    unsigned& depth = m_depths[prefix];
    if (depth == m_depth)
        return false;
    m_undos.push_back({m_depth, prefix, depth});
    depth = m_depth;
    return true;
}

} // namespace quillon::xml
