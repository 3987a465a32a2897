#include "xml/keyreader.h"

#include "base/failure.h"
#include "xml/cursor.h"

namespace quillon::xml {

KeyReader::~KeyReader() {
    // One by one: the chain of readers is as long as the document that was read is deep.
    for (std::unique_ptr<KeyReader> child = std::move(m_child); child;)
        child = std::move(child->m_child);
}

void KeyReader::read(char& value) {
    String const bytes = text();
    value = bytes.empty() ? '\0' : bytes[0];
}

void KeyReader::read(bool& value) {
    String const word = text();
    if (word.equalsNoCase2("true") || word.equalsNoCase2("yes") || word == "1") {
        value = true;
    } else if (word.equalsNoCase2("false") || word.equalsNoCase2("no") || word == "0") {
        value = false;
    } else {
        log(TRACE, "xml.KeyReader", "read", "cannot read boolean");
        failQuietly<EKeyReader>();
    }
}

IKeyReader& KeyReader::operator[](String const& key) {
    Element* const element = index().take(key);
    if (!element)
        fail<EKeyReader>("xml.KeyReader", "operator[]", "no element left: " + excerpt(key));
    if (m_child) {
        m_child->m_element = element;
        m_child->m_index.reset();
    } else {
        m_child = std::make_unique<KeyReader>(*element);
    }
    return *m_child;
}

String KeyReader::getAttribute(char const* name) const {
    return m_element->hasAttribute(name) ? m_element->getAttribute(name).getValue() : String();
}

ChildIndex& KeyReader::index() const {
    if (!m_index || !m_index->isCurrent())
        m_index.emplace(*m_element);
    return *m_index;
}

void KeyReader::refuse() const {
    fail<EKeyReader>("xml.KeyReader", "read", "an element cannot be read like this");
}

} // namespace quillon::xml
