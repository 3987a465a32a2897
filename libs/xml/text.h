// Character data of a document.
#pragma once

#include "xml/node.h"

namespace quillon::xml {

/// A run of character data, with its references decoded.
class Text final : public Node {
public:
    explicit Text(String const& text = String()) : Node(Type::text), m_text(text.owned()) {}

    String const& getText() const noexcept { return m_text; }
    void setText(String const& text) { m_text = text.owned(); }

    /// The text with "&" and "<" escaped; `indent` is not used.
    String toXml(String const& indent) const override;

private:
    String m_text;
};

} // namespace quillon::xml
