// The child elements of one element by name.
#pragma once

#include "xml/element.h"

#include <map>

namespace quillon::xml {

/// Finds children without scanning them again for every key: made in one pass over the children, in which
/// each name, in lower case, gets the list of its elements that are not hidden. One thread at a time.
class ChildIndex {
public:
    /// `parent` must outlive the index.
    explicit ChildIndex(Element& parent);

    /// False when children were added, moved, hidden or shown by somebody else.
    bool isCurrent() const noexcept { return m_revision == m_parent->getRevision(); }

    /// The number of elements named `name`, ignoring ASCII case, that are not hidden.
    unsigned count(String const& name) const;
    /// The first of them, which is hidden from now on; null when there is none.
    Element* take(String const& name);

private:
    struct Named {
        std::vector<Element*> elements;
        std::size_t taken = 0;
    };

    Element* m_parent;
    unsigned m_revision;
    std::map<String, Named> m_names;
};

} // namespace quillon::xml
