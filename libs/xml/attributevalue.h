// The value of an attribute.
#pragma once

#include "xml/exceptions.h"

namespace quillon::xml {

class Cursor;

/// A value and the quotes that it stands in. A value type.
class AttributeValue {
public:
    /// simple: '…', double: "…".
    enum class Quote : unsigned char { simpleQuote, doubleQuote };

    AttributeValue() = default;
    explicit AttributeValue(String const& value, Quote quote = Quote::doubleQuote)
        : m_value(value.owned()), m_quote(quote) {}

    /// Reads a quoted value and decodes its references. Throws EXmlAttributeValue.
    static AttributeValue parse(Cursor& cursor);

    String const& getValue() const noexcept { return m_value; }
    Quote getQuote() const noexcept { return m_quote; }

    /// The value in its quotes, with references for "&", "<" and the quote itself.
    String toXml() const;

private:
    String m_value;
    Quote m_quote = Quote::doubleQuote;
};

} // namespace quillon::xml
