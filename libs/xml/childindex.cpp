#include "xml/childindex.h"

namespace quillon::xml {

ChildIndex::ChildIndex(Element& parent) : m_parent(&parent), m_revision(parent.getRevision()) {
    for (Node* node = parent.getFirstChild(); node; node = node->getNextSibling()) {
        Element* const element = node->asElement();
        if (element && !element->isHidden())
            m_names[element->getName().lower()].elements.push_back(element);
    }
}

unsigned ChildIndex::count(String const& name) const {
    auto const found = m_names.find(name.lower());
    return found == m_names.end()
               ? 0
               : static_cast<unsigned>(found->second.elements.size() - found->second.taken);
}

Element* ChildIndex::take(String const& name) {
    auto const found = m_names.find(name.lower());
    if (found == m_names.end() || found->second.taken == found->second.elements.size())
        return nullptr;
    Element* const element = found->second.elements[found->second.taken++];
    element->setHidden(true);
    m_revision = m_parent->getRevision();
    return element;
}

} // namespace quillon::xml
