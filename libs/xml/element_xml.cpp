// An element as XML. Goes through the tree along its links: a document may be as deep as it is long.
#include "xml/element.h"

#include <algorithm>

namespace quillon::xml {

namespace {

bool hasText(Element const& element) noexcept {
    for (Node const* node = element.getFirstChild(); node; node = node->getNextSibling())
        if (node->getType() == Node::Type::text)
            return true;
    return false;
}

class Output {
public:
    explicit Output(String const& indent) : m_indent(indent) {}

    String write(Element const& root) {
        Node const* node = &root;
        while (node) {
            begin(*node);
            if (node->getFirstChild()) {
                node = node->getFirstChild();
                continue;
            }
            while (node != &root && !node->getNextSibling()) {
                node = node->getParent();
                end(static_cast<Element const&>(*node));
            }
            node = node == &root ? nullptr : node->getNextSibling();
        }
        return m_out;
    }

private:
    void begin(Node const& node) {
        if (m_depth > 0)
            newLine();
        Element const* const element = node.asElement();
        if (!element) {
            m_out.append(node.toXml(m_indent));
            return;
        }
        m_out.append('<', element->getName());
        for (Attribute const& attribute : element->getAttributes())
            m_out.append(' ', attribute.toXml());
        m_out.append(element->getFirstChild() ? ">" : "/>");
        if (element->getFirstChild())
            enter(*element);
    }

    void end(Element const& element) {
        --m_depth;
        newLine();
        m_out.append("</", element.getName(), '>');
        if (m_depth == m_verbatimFrom)
            m_verbatimFrom = none;
    }

    // White space between a text and its neighbours would become part of the text.
    void enter(Element const& element) {
        if (m_verbatimFrom == none && hasText(element))
            m_verbatimFrom = m_depth;
        ++m_depth;
    }

    void newLine() {
        if (m_verbatimFrom != none)
            return;
        m_out.append("\r\n");
        m_out.append(m_indent);
        m_out.append(std::min(m_depth, maxIndent), ' ');
    }

    static constexpr unsigned none = String::npos;
    static constexpr unsigned maxIndent = 100; // else the text grows with the square of the depth

    String const& m_indent;
    String m_out;
    unsigned m_depth = 0;
    unsigned m_verbatimFrom = none; // the depth of the outermost open element that holds text
};

} // namespace

String Element::toXml(String const& indent) const {
    return Output(indent).write(*this);
}

} // namespace quillon::xml
