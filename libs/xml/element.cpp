#include "xml/element.h"

#include "base/failure.h"
#include "xml/cursor.h"
#include "xml/text.h"
#include "xml/treeparser.h"

#include <algorithm>

namespace quillon::xml {

std::unique_ptr<Element> Element::parse(Cursor& cursor) {
    return TreeParser(cursor).parse();
}

Node& Element::append(std::unique_ptr<Node> child) {
    if (!child)
        fail<EXmlNode>("xml.Element", "append", "cannot create node");
    Node* const node = child.release();
    node->m_parent = this;
    (m_last ? m_last->m_next : m_first) = node;
    m_last = node;
    ++m_revision;
    return *node;
}

Element& Element::appendElement(String const& name) {
    return static_cast<Element&>(append(std::make_unique<Element>(name)));
}

void Element::appendText(String const& text) {
    append(std::make_unique<Text>(text));
}

String Element::getText() const noexcept {
    for (Node const* node = m_first; node; node = node->m_next)
        if (node->m_type == Type::text)
            return static_cast<Text const*>(node)->getText();
    return String();
}

Attribute const* Element::findAttribute(String const& name) const noexcept {
    for (Attribute const& attribute : m_attributes)
        if (attribute.getName() == name)
            return &attribute;
    return nullptr;
}

Attribute const& Element::getAttribute(String const& name) const {
    if (Attribute const* const attribute = findAttribute(name))
        return *attribute;
    fail<EXmlNoAttribute>("xml.Element", "getAttribute", "no attribute: " + excerpt(name));
}

void Element::setAttribute(String const& name, AttributeValue const& value) {
    if (Attribute const* const attribute = findAttribute(name))
        m_attributes[static_cast<std::size_t>(attribute - m_attributes.data())].setValue(value);
    else
        m_attributes.emplace_back(name, value);
}

void Element::sort() {
    std::vector<Element*> left{this};
    while (!left.empty()) {
        Element* const element = left.back();
        left.pop_back();
        std::stable_sort(element->m_attributes.begin(), element->m_attributes.end(),
                         [](Attribute const& a, Attribute const& b) { return a.getName() < b.getName(); });
        element->sortChildren();
        for (Node* node = element->m_first; node; node = node->m_next)
            if (Element* const child = node->asElement())
                left.push_back(child);
    }
}

void Element::sortChildren() {
    auto const nameOf = [](Node const* node) {
        Element const* const element = node->asElement();
        return element ? element->m_name.view() : std::string_view();
    };
    std::vector<Node*> children;
    for (Node* node = m_first; node; node = node->m_next)
        children.push_back(node);
    std::stable_sort(children.begin(), children.end(),
                     [&](Node const* a, Node const* b) { return nameOf(a) < nameOf(b); });
    Node** link = &m_first;
    for (Node* const node : children) {
        *link = node;
        link = &node->m_next;
        m_last = node;
    }
    *link = nullptr;
    ++m_revision;
}

} // namespace quillon::xml
