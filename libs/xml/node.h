// What an XML document is a tree of.
#pragma once

#include "xml/exceptions.h"

#include <memory>

namespace quillon::xml {

class Element;

/// One node of a document's tree. Its parent owns it; a node without parent belongs to whoever holds it. A
/// tree is used by one thread at a time.
class Node {
public:
    enum class Type : unsigned char { element, text, comment };

    /// A new, empty node. Throws EXmlNode for a type that is none.
    static std::unique_ptr<Node> create(Type type);

    /// Destroys what is below as well, however deep that is.
    virtual ~Node();
    Node(Node const&) = delete;
    Node& operator=(Node const&) = delete;

    Type getType() const noexcept { return m_type; }
    Element* getParent() const noexcept { return m_parent; }
    Node* getNextSibling() const noexcept { return m_next; }
    Node* getFirstChild() const noexcept { return m_first; }
    /// This node when it is an element, else null.
    Element* asElement() noexcept;
    Element const* asElement() const noexcept;

    /// Hidden: a key reader has handed this node out.
    bool isHidden() const noexcept { return m_hidden; }
    void setHidden(bool hidden) noexcept;

    /// The node and what is below as XML. Each element of an element without text of its own stands on a new
    /// line, after CR LF, `indent` and one blank more for each level; beyond 100 levels no blank is added.
    virtual String toXml(String const& indent) const = 0;

protected:
    explicit Node(Type type) noexcept : m_type(type) {}

private:
    friend class Element;

    Element* m_parent = nullptr;
    Node* m_next = nullptr;
    Node* m_first = nullptr;
    Node* m_last = nullptr;
    Type m_type;
    bool m_hidden = false;
    unsigned m_revision = 0; // an element's; see Element::getRevision
};

} // namespace quillon::xml
