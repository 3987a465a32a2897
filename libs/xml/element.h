// The elements of a document.
#pragma once

#include "xml/attribute.h"
#include "xml/node.h"

#include <vector>

namespace quillon::xml {

class Cursor;

/// A node with a name, attributes and children, which it owns. Names of elements are looked up ignoring ASCII
/// case, names of attributes byte for byte.
class Element final : public Node {
public:
    explicit Element(String const& name = String()) : Node(Type::element), m_name(name.owned()) {}

    /// Reads the element that begins at `cursor` and all that is in it: XML 1.0 with namespaces (XML
    /// Names 1.0), without document types. White space is kept; comments, processing instructions and the
    /// bounds of CDATA sections are skipped, and the text around them is one Text. Throws an EXmlNode.
    static std::unique_ptr<Element> parse(Cursor& cursor);

    /// With the namespace prefix, if any.
    String const& getName() const noexcept { return m_name; }
    void setName(String const& name) { m_name = name.owned(); }
    /// What stands before the ":"; empty without one.
    String getPrefix() const noexcept { return m_name.left(':', true); }

    /// Adds a node as the last child and returns it. Throws EXmlNode when there is none.
    Node& append(std::unique_ptr<Node> child);
    Element& appendElement(String const& name);
    void appendText(String const& text);

    /// The text of the first Text child; empty without one.
    String getText() const noexcept;

    std::vector<Attribute> const& getAttributes() const noexcept { return m_attributes; }
    bool hasAttribute(String const& name) const noexcept { return findAttribute(name) != nullptr; }
    /// Throws EXmlNoAttribute when there is none of that name. Valid until the attributes change.
    Attribute const& getAttribute(String const& name) const;
    /// Adds the attribute or replaces its value.
    void setAttribute(String const& name, AttributeValue const& value);

    // Child elements by name; the hidden ones count.
    bool hasElementsByTagName(String const& name) const noexcept;
    unsigned getNbElementsByTagName(String const& name) const noexcept;
    /// In the document's order.
    std::vector<Element*> getElementsByName(String const& name) const;
    /// The first element reached by a path of names, as in "a/b/c", a being a child of this element; null
    /// when there is none. Throws EXmlElement when the path has an empty step.
    Element* getNodeByPath(String const& path) const;

    /// Puts the attributes, and the children by their element names, in ascending order of bytes, here and in
    /// everything below. Children of one name keep their order; text and comments come first.
    void sort();

    String toXml(String const& indent) const override;

    /// Changes whenever children are added, moved, hidden or shown: for those who keep something computed
    /// from them.
    unsigned getRevision() const noexcept { return m_revision; }

private:
    friend class TreeParser;

    Attribute const* findAttribute(String const& name) const noexcept;
    void sortChildren();

    String m_name;
    std::vector<Attribute> m_attributes;
};

} // namespace quillon::xml
