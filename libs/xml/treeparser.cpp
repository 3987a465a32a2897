#include "xml/treeparser.h"

#include "base/failure.h"
#include "xml/comment.h"
#include "xml/cursor.h"
#include "xml/references.h"

#include <algorithm>

namespace quillon::xml {

namespace {

constexpr char nameEnds[] = ">/= \r\t\n";

/// What a declaration of a namespace declares.
String declaredPrefix(Attribute const& attribute) {
    return attribute.getName().right(':', true);
}

bool hasPrefix(String const& name) {
    return name.find(':') != String::npos;
}

} // namespace

std::unique_ptr<Element> TreeParser::parse() {
    readStartTag();
    while (m_open)
        readContent();
    return std::move(m_root);
}

void TreeParser::readContent() {
    String const raw = m_cursor.readTo('<');
    if (!raw.empty())
        m_text.append(decodeReferences(raw));
    if (m_cursor.atEnd())
        fail<EXmlElement>("xml.Element", "parse",
                          "Problem with element: " + m_cursor.excerpt(m_open->getName()));
    readMarkup();
}

void TreeParser::readMarkup() {
    if (m_cursor.at("</"))
        readEndTag();
    else if (!Comment::skip(m_cursor) && !readCharacterSection())
        readStartTag();
}

bool TreeParser::readCharacterSection() {
    if (!m_cursor.at("<!"))
        return false;
    Cursor const start = m_cursor;
    String raw;
    if (!m_cursor.skip("<![CDATA[") || !m_cursor.readPast("]]>", raw))
        fail<EXmlElement>("xml.Element", "parse", "bad xml file format: " + start.excerpt());
    m_text.append(raw);
    return true;
}

void TreeParser::readStartTag() {
    Cursor const start = m_cursor;
    m_cursor.skip('<');
    String const name = m_cursor.readToAnyOf(nameEnds);
    if (name.empty())
        fail<EXmlElement>("xml.Element", "parse", "no tag found: " + start.excerpt());
    if (name.findFirstOf("<&\"'", 0) != String::npos)
        fail<EXmlElement>("xml.Element", "parse", "bad xml file format: " + start.excerpt());

    auto element = std::make_unique<Element>(name);
    m_namespaces.openElement();
    readAttributes(*element);
    checkAttributes(*element);
    bool const isEmpty = m_cursor.skip('/');
    if (!m_cursor.skip('>'))
        fail<EXmlElement>("xml.Element", "parse", "bad xml file format: " + start.excerpt());
    open(std::move(element));
    if (isEmpty)
        close();
}

void TreeParser::readAttributes(Element& element) {
    for (;;) {
        bool const apart = m_cursor.skipBlanks();
        if (m_cursor.atEnd() || m_cursor.at('>') || m_cursor.at('/'))
            return;
        if (!apart)
            fail<EXmlAttribute>("xml.Element", "parse", "cannot parse attributes");
        element.m_attributes.push_back(Attribute::parse(m_cursor));
    }
}

void TreeParser::readEndTag() {
    Cursor const start = m_cursor;
    m_cursor.skip("</");
    String const name = m_cursor.readToAnyOf(nameEnds);
    m_cursor.skipBlanks();
    if (!m_cursor.skip('>'))
        fail<EXmlElement>("xml.Element", "parse", "bad xml file format: " + start.excerpt());
    if (name != m_open->getName())
        fail<EXmlElement>("xml.Element", "parse",
                          "Problem with element: " + m_cursor.excerpt(m_open->getName()));
    close();
}

void TreeParser::checkAttributes(Element const& element) {
    declareNamespaces(element);
    checkPrefixes(element);
    std::vector<std::string_view> names;
    if (element.m_attributes.size() > 1)
        for (Attribute const& attribute : element.m_attributes)
            names.push_back(attribute.getName().view());
    std::sort(names.begin(), names.end());
    if (std::adjacent_find(names.begin(), names.end()) != names.end())
        fail<EXmlAttribute>("xml.Element", "parse", "cannot parse attributes");
}

void TreeParser::declareNamespaces(Element const& element) {
    for (Attribute const& attribute : element.m_attributes) {
        if (!attribute.declaresNamespace() || m_namespaces.declare(declaredPrefix(attribute)))
            continue;
        if (!hasPrefix(attribute.getName()))
            fail<EXmlAttribute>("xml.Element", "parse", "redefinition of xmlns attribute");
        fail<EXmlAttribute>("xml.Element", "parse",
                            "redefinition of xmlns attribute : " +
                                m_cursor.excerpt(declaredPrefix(attribute)));
    }
}

void TreeParser::checkPrefixes(Element const& element) const {
    if (hasPrefix(element.getName()) && !m_namespaces.isDeclared(element.getPrefix()))
        fail<EXmlElement>("xml.Element", "parse", "non-defined qualified name for element");
    for (Attribute const& attribute : element.m_attributes) {
        String const& name = attribute.getName();
        if (hasPrefix(name) && !attribute.declaresNamespace() && !m_namespaces.isDeclared(name.left(':')))
            fail<EXmlAttribute>("xml.Element", "parse",
                                "non-defined qualified name for attribute : " + m_cursor.excerpt(name));
    }
}

void TreeParser::open(std::unique_ptr<Element> element) {
    Element* const opened = element.get();
    flushText();
    if (m_open)
        m_open->append(std::move(element));
    else
        m_root = std::move(element);
    m_open = opened; // cppcheck-suppress danglingLifetime; the tree owns it
}

void TreeParser::close() {
    flushText();
    m_namespaces.closeElement();
    m_open = m_open->getParent();
}

void TreeParser::flushText() {
    if (m_text.empty())
        return;
    m_open->appendText(m_text);
    m_text.clear();
}

} // namespace quillon::xml
