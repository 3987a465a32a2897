// An attribute of an element.
#pragma once

#include "xml/attributevalue.h"

namespace quillon::xml {

/// A name and its value. A value type.
class Attribute {
public:
    Attribute(String const& name, AttributeValue const& value) : m_name(name.owned()), m_value(value) {}

    /// Reads name="value". Throws EXmlAttribute, or EXmlAttributeValue below it.
    static Attribute parse(Cursor& cursor);

    String const& getName() const noexcept { return m_name; }
    AttributeValue const& getAttributeValue() const noexcept { return m_value; }
    String const& getValue() const noexcept { return m_value.getValue(); }
    void setValue(AttributeValue const& value) { m_value = value; }

    /// Whether it declares a namespace: "xmlns" declares the default one, "xmlns:p" the prefix p.
    bool declaresNamespace() const noexcept { return m_name == "xmlns" || m_name.starts("xmlns:"); }

    String toXml() const { return m_name + "=" + m_value.toXml(); }

private:
    String m_name;
    AttributeValue m_value;
};

} // namespace quillon::xml
