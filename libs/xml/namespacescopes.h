// The namespace prefixes that are declared at one place of a document.
#pragma once

#include "base/string.h"

#include <map>
#include <vector>

namespace quillon::xml {

/// Follows a parser through the elements of a document. A look-up costs the same at any depth: what an
/// element declares is entered when it begins and undone when it ends.
class NamespaceScopes {
public:
    void openElement() noexcept { ++m_depth; }
    void closeElement();

    /// Declares a prefix, or the default namespace as "", for the element opened last and what is in it.
    /// False when that element has declared it already.
    bool declare(String const& prefix);
    bool isDeclared(String const& prefix) const { return prefix == "xml" || m_depths.contains(prefix); }

private:
    struct Undo {
        unsigned depth;
        String prefix;
        unsigned before; // the depth of the declaration that was hidden, 0 for none
    };

    unsigned m_depth = 0;
    std::map<String, unsigned> m_depths; // of each prefix's innermost declaration
    std::vector<Undo> m_undos;
};

} // namespace quillon::xml
