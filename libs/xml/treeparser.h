// Builds the tree of one element from its text.
#pragma once

#include "xml/element.h"
#include "xml/namespacescopes.h"

namespace quillon::xml {

/// What Element::parse() runs: a loop over the markup with one open element at a time, whose parents are the
/// stack. Time and memory grow with the length of the text alone, whatever its depth.
class TreeParser {
public:
    /// `cursor` stands at the element's "<" and is left behind its end tag.
    explicit TreeParser(Cursor& cursor) noexcept : m_cursor(cursor) {}

    std::unique_ptr<Element> parse();

private:
    void readContent();
    void readMarkup();
    bool readCharacterSection();
    void readStartTag();
    void readAttributes(Element& element);
    void readEndTag();

    void checkAttributes(Element const& element);
    void declareNamespaces(Element const& element);
    void checkPrefixes(Element const& element) const;

    void open(std::unique_ptr<Element> element);
    void close();
    void flushText();

    Cursor& m_cursor;
    std::unique_ptr<Element> m_root;
    Element* m_open = nullptr;
    String m_text; // of the open element, up to the next child
    NamespaceScopes m_namespaces;
};

} // namespace quillon::xml
