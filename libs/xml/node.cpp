#include "xml/node.h"

#include "base/failure.h"
#include "base/stringconversion.h"
#include "xml/comment.h"
#include "xml/element.h"
#include "xml/text.h"

namespace quillon::xml {

std::unique_ptr<Node> Node::create(Type type) {
    switch (type) {
    case Type::element:
        return std::make_unique<Element>();
    case Type::text:
        return std::make_unique<Text>();
    case Type::comment:
        return std::make_unique<Comment>();
    }
    fail<EXmlNode>("xml.Node", "create",
                   "cannot create for type: " + quillon::toString(static_cast<unsigned>(type)) +
                       ": invalid xml type");
}

Node::~Node() {
    // A list of what is left instead of a recursion: a document may be as deep as it is long.
    Node* left = std::exchange(m_first, nullptr);
    while (left) {
        Node* const node = left;
        left = node->m_next;
        if (node->m_first) {
            node->m_last->m_next = left;
            left = std::exchange(node->m_first, nullptr);
        }
        delete node;
    }
}

Element* Node::asElement() noexcept {
    return m_type == Type::element ? static_cast<Element*>(this) : nullptr;
}

Element const* Node::asElement() const noexcept {
    return m_type == Type::element ? static_cast<Element const*>(this) : nullptr;
}

void Node::setHidden(bool hidden) noexcept {
    if (m_hidden == hidden)
        return;
    m_hidden = hidden;
    if (m_parent)
        ++m_parent->m_revision;
}

} // namespace quillon::xml
