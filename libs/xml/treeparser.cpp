#include "xml/treeparser.h"

#include "base/log.h"
#include "xml/comment.h"
#include "xml/cursor.h"
#include "xml/references.h"

#include <algorithm>

namespace quillon::xml {

namespace {

constexpr char nameEnds[] = ">/= \r\t\n";

[[noreturn]] void failElement(String const& text, int line) {
    log(ERROR, "xml.Element", "parse", text);
    throw EXmlElement("EXmlElement", "libs/xml/treeparser.cpp", line);
}

[[noreturn]] void failAttribute(String const& text, int line) {
    log(ERROR, "xml.Element", "parse", text);
    throw EXmlAttribute("EXmlAttribute", "libs/xml/treeparser.cpp", line);
}

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
        failElement("Problem with element: " + m_cursor.excerpt(m_open->getName()), __LINE__);
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
        failElement("bad xml file format: " + start.excerpt(), __LINE__);
    m_text.append(raw);
    return true;
}

void TreeParser::readStartTag() {
    Cursor const start = m_cursor;
    m_cursor.skip('<');
    String const name = m_cursor.readToAnyOf(nameEnds);
    if (name.empty())
        failElement("no tag found: " + start.excerpt(), __LINE__);
    if (name.findFirstOf("<&\"'", 0) != String::npos)
        failElement("bad xml file format: " + start.excerpt(), __LINE__);

    auto element = std::make_unique<Element>(name);
    m_namespaces.openElement();
    readAttributes(*element);
    checkAttributes(*element);
    bool const isEmpty = m_cursor.skip('/');
    if (!m_cursor.skip('>'))
        failElement("bad xml file format: " + start.excerpt(), __LINE__);
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
            failAttribute("cannot parse attributes", __LINE__);
        element.m_attributes.push_back(Attribute::parse(m_cursor));
    }
}

void TreeParser::readEndTag() {
    Cursor const start = m_cursor;
    m_cursor.skip("</");
    String const name = m_cursor.readToAnyOf(nameEnds);
    m_cursor.skipBlanks();
    if (!m_cursor.skip('>'))
        failElement("bad xml file format: " + start.excerpt(), __LINE__);
    if (name != m_open->getName())
        failElement("Problem with element: " + m_cursor.excerpt(m_open->getName()), __LINE__);
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
        failAttribute("cannot parse attributes", __LINE__);
}

void TreeParser::declareNamespaces(Element const& element) {
    for (Attribute const& attribute : element.m_attributes) {
        if (!attribute.declaresNamespace() || m_namespaces.declare(declaredPrefix(attribute)))
            continue;
        if (!hasPrefix(attribute.getName()))
            failAttribute("redefinition of xmlns attribute", __LINE__);
        failAttribute("redefinition of xmlns attribute : " + m_cursor.excerpt(declaredPrefix(attribute)),
                      __LINE__);
    }
}

void TreeParser::checkPrefixes(Element const& element) const {
    if (hasPrefix(element.getName()) && !m_namespaces.isDeclared(element.getPrefix()))
        failElement("non-defined qualified name for element", __LINE__);
    for (Attribute const& attribute : element.m_attributes) {
        String const& name = attribute.getName();
        if (hasPrefix(name) && !attribute.declaresNamespace() && !m_namespaces.isDeclared(name.left(':')))
            failAttribute("non-defined qualified name for attribute : " + m_cursor.excerpt(name), __LINE__);
    }
}

void TreeParser::open(std::unique_ptr<Element> element) {
    Element* const opened = element.get();
    flushText();
    if (m_open)
        m_open->append(std::move(element));
    else
        m_root = std::move(element);
    m_open = opened;
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
